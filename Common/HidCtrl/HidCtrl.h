// SPDX-License-Identifier: GPL-3.0-or-later
// The device session: whether the controller is there, which firmware it runs, what it sent last.

#pragma once

#include "HidHandler.h"
#include "HidService.h"
#include "HidUtil.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

namespace wqv
{

/** The one object through which the rest of the program talks to the controller.

    Message thread, except for setData, deviceOutput and state: any thread may call these between initialize and
    finalize.
*/
class HidCtrl final : public HidHandler
{
public:
    /** What state() tells. */
    enum State : std::int32_t
    {
        noDevice = 0,
        connected = 1,
        requestSent = 2 ///< connected, and setData was called since the device was matched
    };

    /** @param service  outlives this object */
    explicit HidCtrl (HidService& service);
    virtual ~HidCtrl();

    HidCtrl (const HidCtrl&) = delete;
    HidCtrl& operator= (const HidCtrl&) = delete;

    /** Starts the session and looks for the controller at once. The handler is not called here: it learns from state()
        and version() what was found.

        @param handler  hears of the controller until finalize()
        @param mode     which product is sought; see HidDeviceType
        @returns false when another session's transport is active, and then this one has none
    */
    [[nodiscard]] bool initialize (HidHandler& handler, std::int32_t mode);

    /** Ends the session: the handler hears nothing more. Calling it twice is harmless. No other thread may still be
        sending. */
    void finalize();

    /** Looks for the controller unless one is held. @returns whether one is held now */
    [[nodiscard]] bool deviceMatching();

    /** The firmware version of the device that the transport holds, as a decimal number; 0 without one. */
    [[nodiscard]] std::int32_t deviceVersion() const;

    /** Zeroes @p buffer and copies the transport's latest report into it.
        @returns the bytes copied; 0 for an empty buffer or without a device */
    [[nodiscard]] std::uint32_t deviceInput (std::span<std::uint8_t> buffer) const;

    /** Has the reports told that have arrived and were not read yet, as far as HidConnection::readPending() can. */
    void readPending();

    /** Sends one output report and notes that it did: from then on a removal is always told to the handler. Any thread;
        may wait as HidConnection::send does.
        @returns false without a device or when the system did not take the report */
    [[nodiscard]] bool setData (std::span<const std::uint8_t> report);

    /** Sends one output report without touching the state. Any thread. */
    [[nodiscard]] bool deviceOutput (std::span<const std::uint8_t> report);

    /** One of State. Any thread. */
    [[nodiscard]] std::int32_t state() const { return m_state.load(); }

    /** The firmware version of the controller as a decimal number: 105 is 1.05. 0 without a controller. */
    [[nodiscard]] std::int32_t version() const { return m_version; }

    /** The last input report; empty after a removal. Valid until the next event. */
    [[nodiscard]] std::span<const std::uint8_t> inputReport() const
    {
        return std::span (m_inputBuffer).first (m_inputLength);
    }

    void removalCallBack() override;
    void matchingCallBack() override;
    void inputCallBack() override;

private:
    void readDevice();

    HidService& m_service;
    HidHandler* m_handler = nullptr;
    std::unique_ptr<HidUtil> m_hidUtil;
    std::atomic<std::int32_t> m_state { noDevice };
    std::int32_t m_version = 0;
    ReportBuffer m_inputBuffer {};
    std::uint32_t m_inputLength = 0;
};

} // namespace wqv
