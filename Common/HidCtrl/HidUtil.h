// SPDX-License-Identifier: GPL-3.0-or-later
// The transport: finds the one controller among the system's HID devices and carries reports to and from it.

#pragma once

#include "HidHandler.h"
#include "HidService.h"

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace wqv
{

/** Holds at most one matching device, and only one transport is active in the process at a time.

    All operations are on the message thread, except for deviceOutput, which any thread may call.
*/
class HidUtil final : private HidService::Listener
{
public:
    /** @param service  outlives this object */
    explicit HidUtil (HidService& service);
    ~HidUtil();

    HidUtil (const HidUtil&) = delete;
    HidUtil& operator= (const HidUtil&) = delete;

    /** Becomes the active transport and takes a list of the devices. Opens nothing and calls nobody back.

        @param handler  hears of the device; outlives this object or its finalize()
        @param mode     0 or 1: the entry of HidDeviceType to seek
        @returns false, without any effect, when another transport is active
    */
    [[nodiscard]] bool initialize (HidHandler& handler, std::int32_t mode);

    /** Drops the device and stops watching. Afterwards nobody is called back. Does nothing to another, active
        transport; calling it twice is harmless. */
    void finalize();

    /** Whether a matching device is held. If none is, looks for one first. The device with the lowest location wins; of
        its interfaces, the one that has a 128-byte output report and an input report, and of equally good ones the one
        with the lowest number.

        From the first call on, devices that are attached later are watched for. An interface that fits the conversation
        better takes the place of another one of the same device, even if something was sent to that one. One that fits
        equally well, but has a lower number, does so only while nothing was sent. */
    [[nodiscard]] bool deviceMatching();

    /** The device's version number turned from BCD into decimal: 0x0105 gives 105, and digits above 9 just count as
        they are. 0 without a device. */
    [[nodiscard]] std::int32_t deviceVersion() const;

    /** Copies the last input report, as far as it fits.
        @returns the bytes copied; 0 without a device */
    [[nodiscard]] std::uint32_t deviceInput (std::span<std::uint8_t> buffer) const;

    /** Has the reports told that have arrived and were not read yet, as far as HidConnection::readPending() can. */
    void readPending();

    /** Sends one output report and waits until the system has taken it; see HidConnection::send. Any thread.
        @returns false for an empty report or one that is not as long as the device's own, without a device, or when the
                 system did not take it */
    [[nodiscard]] bool deviceOutput (std::span<const std::uint8_t> report);

    /** Forgets the device that is held; false if there was none. A write in progress keeps its handle until it ends. */
    bool deviceRemoval();

private:
    void deviceAttached (const HidDevice& device) override;
    void deviceRemoved (HidDeviceId device) override;
    void reportReceived (HidDeviceId device, std::size_t length) override;

    [[nodiscard]] bool checkID (const HidDevice& device);
    [[nodiscard]] bool isBetterInterface (const HidDevice& device);
    void registerDeviceMatching();
    void rebuildDeviceList (HidDeviceId leaving);

    static inline HidUtil* m_pinstance = nullptr; ///< the active transport; message thread only

    HidService& m_service;
    HidHandler* m_handler = nullptr;
    std::int32_t m_mode = 0;
    std::vector<HidDevice> m_devices;
    HidDeviceId m_leaving = 0; ///< the device that went away since the list was taken; it may still be in a new one
    std::optional<HidDevice> m_device;
    std::optional<HidDevice> m_inUse; ///< the interface that another program was last found to hold
    ReportBuffer m_reportBuffer {};
    std::uint32_t m_reportLength = 0;
    bool m_matchingRegistered = false;

    std::mutex m_connectionLock; ///< guards what follows; never held during a write
    std::shared_ptr<HidConnection> m_connection;
    std::uint32_t m_outputReportLength = 0; ///< of the device; 0 if it is not known, and then any may be sent
    bool m_isUsed = false;                  ///< something was sent to the device
};

} // namespace wqv
