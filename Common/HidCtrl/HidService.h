// SPDX-License-Identifier: GPL-3.0-or-later
// The interface that each system implements for its HID devices: list, watch, open, send.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace wqv
{

/** Names one attached device for as long as it stays attached; a device that comes back has another id. Never 0. */
using HidDeviceId = std::uint64_t;

/** What a system tells of an attached HID device. */
struct HidDevice
{
    HidDeviceId id = 0;
    std::int32_t vendorId = 0;
    std::int32_t productId = 0;
    std::int32_t versionNumber = 0;       ///< binary-coded decimal, as in the device descriptor: 0x0105 is 1.05
    std::uint64_t location = 0;           ///< orders devices by where they are plugged in
    std::int32_t interfaceNumber = 0;     ///< of the USB interface; one physical device may have several
    std::uint32_t inputReportLength = 0;  ///< bytes of the largest input report without its id; 0 when none is known
    std::uint32_t outputReportLength = 0; ///< the same of its output reports
};

/** The largest input report that is kept. */
inline constexpr std::size_t reportBufferSize = 1024;

/** Where the service writes each input report; owned by the caller. */
using ReportBuffer = std::array<std::uint8_t, reportBufferSize>;

/** An open device. Shared by the transport and by a write in progress: the last owner's release closes the handle, so
    that a report can never go to a handle that has become something else. */
class HidConnection
{
public:
    HidConnection() = default;
    HidConnection (const HidConnection&) = delete;
    HidConnection& operator= (const HidConnection&) = delete;
    virtual ~HidConnection() = default;

    /** Ends input: no report is written into the buffer any more, and the listener hears of none. Message thread; does
        not wait. */
    virtual void stopInput() = 0;

    /** Tells the listener at once of the reports that have arrived and were not read yet, where the system can be asked for them;
        elsewhere does nothing, and the next two rounds of the message loop tell of them. Message thread. */
    virtual void readPending() {}

    /** Sends one output report, with report id 0, and returns when the system has taken it or given up.

        Any thread, one at a time. It may wait (5 s at most) while the device takes nothing; an unplug ends
        the wait.

        @returns whether the system took the whole report
    */
    [[nodiscard]] virtual bool send (std::span<const std::uint8_t> report) = 0;
};

/** The HID devices of a system. It knows no ids and chooses no device: that is the transport's business.

    All operations and all callbacks are on the message thread.
*/
class HidService
{
public:
    /** Hears of devices. */
    class Listener
    {
    public:
        /** A device was attached, or one that was denied has become accessible. */
        virtual void deviceAttached (const HidDevice& device) = 0;

        /** A device went away; told once, however often the system tells it. */
        virtual void deviceRemoved (HidDeviceId device) = 0;

        /** An input report of an open device lies in its buffer.
            @param length  bytes that the device sent; what exceeds reportBufferSize was dropped
        */
        virtual void reportReceived (HidDeviceId device, std::size_t length) = 0;

    protected:
        Listener() = default;
        Listener (const Listener&) = default;
        Listener& operator= (const Listener&) = default;
        ~Listener() = default;
    };

    enum class OpenResult
    {
        ok,
        denied, ///< the user may not use it (yet)
        inUse,  ///< another program holds it for itself, as this one does with what it has opened
        gone    ///< it is not there any more, or does not answer
    };

    struct Opened
    {
        OpenResult result = OpenResult::gone;
        std::shared_ptr<HidConnection> connection; ///< null unless ok
    };

    HidService() = default;
    HidService (const HidService&) = delete;
    HidService& operator= (const HidService&) = delete;
    virtual ~HidService() = default;

    /** The devices that are attached now, in no particular order. */
    [[nodiscard]] virtual std::vector<HidDevice> devices() = 0;

    /** Sets who hears of devices; null for nobody. The listener hears of every device that is attached after devices() was
        called. */
    virtual void setListener (Listener* newListener) = 0;

    /** Opens a device for input and output, where the system can for this program alone.
        @param buffer  receives every input report until the connection's stopInput()
    */
    [[nodiscard]] virtual Opened open (HidDeviceId device, ReportBuffer& buffer) = 0;
};

} // namespace wqv
