// SPDX-License-Identifier: GPL-3.0-or-later
// One open HID device of Windows's.

#pragma once

#include "HidService.h"
#include "WindowsHandle.h"

#include <windows.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <span>

namespace wqv
{

/** Always has a read under way, whose report it takes on the message loop; sends output reports on any thread; closes the
    device with its last owner. */
class HidFileConnection final : public HidConnection
{
public:
    /** Where a connection posts that readPending() has something to do. */
    struct Mailbox
    {
        HWND window = nullptr;
        UINT message = 0;
        WPARAM device = 0; ///< the message's first value
    };

    /** @param openFile     open for overlapped reading and writing
        @param inputLength  bytes of an input report, without its id */
    HidFileConnection (WindowsHandle openFile, std::size_t inputLength);
    ~HidFileConnection() override;

    /** Starts reading. Message thread.
        @param reportBuffer  receives each report before onReport is called with its length
        @param onReport      called for every report
        @param onHangUp      called once, when the device has gone; input has stopped then */
    void startInput (ReportBuffer& reportBuffer,
                     const Mailbox& mailboxToUse,
                     std::function<void (std::size_t)> onReport,
                     std::function<void()> onHangUp);

    /** The system says that the device has gone: input stops, and a write ends at once. Message thread. */
    void giveUp();

    /** The file that is read and written. */
    [[nodiscard]] HANDLE handle() const { return file.get(); }

    void stopInput() override;

    /** The caller keeps this object alive meanwhile. */
    void readPending() override;

    [[nodiscard]] bool send (std::span<const std::uint8_t> report) override;

private:
    struct Transfer;

    static void CALLBACK handleEndOfRead (void* connection, BOOLEAN isTimeout);

    void startRead();
    void cancel (std::unique_ptr<Transfer> transfer) const;

    const WindowsHandle file;
    const WindowsHandle isGone; ///< an event: no write is to wait any longer
    const std::size_t inputReportLength;
    Mailbox mailbox;
    std::unique_ptr<Transfer> reading; ///< null while input is stopped
    HANDLE wait = nullptr;             ///< for the end of the read
    HDEVNOTIFY news = nullptr;         ///< from the system, of the device
    ReportBuffer* buffer = nullptr;
    std::function<void (std::size_t)> reportCallback;
    std::function<void()> hangUpCallback;
};

} // namespace wqv
