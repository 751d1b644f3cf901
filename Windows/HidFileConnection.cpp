// SPDX-License-Identifier: GPL-3.0-or-later
// Overlapped reading and writing of reports.

#include "HidFileConnection.h"

#include <dbt.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace wqv
{
namespace
{

/** How long a device may take no report. */
constexpr DWORD millisecondsToWrite = 5000;

/** How long a driver may take to give up a transfer. */
constexpr DWORD millisecondsToCancel = 1000;

/** @param staysSet  until somebody resets it, and not just until somebody has seen it */
WindowsHandle makeEvent (BOOL staysSet)
{
    return WindowsHandle (CreateEventW (nullptr, staysSet, FALSE, nullptr));
}

} // namespace

/** A read or a write, with the memory that Windows uses for it until it is over. */
struct HidFileConnection::Transfer
{
    explicit Transfer (std::size_t reportLength) : bytes (reportLength + 1) { overlapped.hEvent = event.get(); }

    /** @param result  of ReadFile or WriteFile, just called */
    void hasStarted (BOOL result) { isUnderWay = result != FALSE || GetLastError() == ERROR_IO_PENDING; }

    [[nodiscard]] DWORD size() const { return static_cast<DWORD> (bytes.size()); }

    const WindowsHandle event = makeEvent (FALSE); ///< set at its end
    OVERLAPPED overlapped {};
    std::vector<std::uint8_t> bytes; ///< a report with its id, 0, before it
    bool isUnderWay = false;
};

HidFileConnection::HidFileConnection (WindowsHandle openFile, std::size_t inputLength)
    : file (std::move (openFile)), isGone (makeEvent (TRUE)), inputReportLength (inputLength)
{
}

HidFileConnection::~HidFileConnection()
{
    stopInput();
}

void HidFileConnection::startInput (ReportBuffer& reportBuffer,
                                    const Mailbox& mailboxToUse,
                                    std::function<void (std::size_t)> onReport,
                                    std::function<void()> onHangUp)
{
    buffer = &reportBuffer;
    mailbox = mailboxToUse;
    reportCallback = std::move (onReport);
    hangUpCallback = std::move (onHangUp);

    DEV_BROADCAST_HANDLE ofDevice {};
    ofDevice.dbch_size = sizeof (ofDevice);
    ofDevice.dbch_devicetype = DBT_DEVTYP_HANDLE;
    ofDevice.dbch_handle = file.get();
    news = RegisterDeviceNotificationW (mailbox.window, &ofDevice, DEVICE_NOTIFY_WINDOW_HANDLE);

    reading = std::make_unique<Transfer> (inputReportLength);
    startRead();
    RegisterWaitForSingleObject (&wait, reading->event.get(), handleEndOfRead, this, INFINITE, WT_EXECUTEINWAITTHREAD);
}

/** On a thread of the system's, which waits for the events of all. */
void CALLBACK HidFileConnection::handleEndOfRead (void* connection, BOOLEAN /*isTimeout*/)
{
    const auto& to = static_cast<const HidFileConnection*> (connection)->mailbox;
    PostMessageW (to.window, to.message, to.device, 0);
}

/** A read that cannot be started ends at once, as one that fails later does. */
void HidFileConnection::startRead()
{
    reading->hasStarted (ReadFile (file.get(), reading->bytes.data(), reading->size(), nullptr, &reading->overlapped));

    if (! reading->isUnderWay)
        SetEvent (reading->event.get());
}

void HidFileConnection::readPending()
{
    // A callback may stop input, which ends the loop.
    while (reading != nullptr)
    {
        DWORD length = 0;

        if (reading->isUnderWay && GetOverlappedResult (file.get(), &reading->overlapped, &length, FALSE) != FALSE)
        {
            const auto reportLength = std::max (DWORD { 1 }, length) - 1;
            std::copy_n (
                reading->bytes.begin() + 1, std::min<std::size_t> (reportLength, buffer->size()), buffer->begin());
            startRead();
            reportCallback (reportLength);
        }
        else if (reading->isUnderWay && GetLastError() == ERROR_IO_INCOMPLETE)
        {
            return;
        }
        else
        {
            reading->isUnderWay = false;
            giveUp();
            hangUpCallback();
        }
    }
}

void HidFileConnection::giveUp()
{
    SetEvent (isGone.get());
    stopInput();
}

void HidFileConnection::stopInput()
{
    auto transfer = std::exchange (reading, nullptr);

    if (transfer == nullptr)
        return;

    // Returns when no wake-up is being posted any more.
    UnregisterWaitEx (wait, INVALID_HANDLE_VALUE);
    UnregisterDeviceNotification (news);
    cancel (std::move (transfer));
}

bool HidFileConnection::send (std::span<const std::uint8_t> report)
{
    auto transfer = std::make_unique<Transfer> (report.size());
    std::ranges::copy (report, transfer->bytes.begin() + 1);
    transfer->hasStarted (
        WriteFile (file.get(), transfer->bytes.data(), transfer->size(), nullptr, &transfer->overlapped));

    if (! transfer->isUnderWay)
        return false;

    const std::array ends { transfer->event.get(), isGone.get() };
    const auto end = WaitForMultipleObjects (static_cast<DWORD> (ends.size()), ends.data(), FALSE, millisecondsToWrite);

    if (end != WAIT_OBJECT_0)
    {
        cancel (std::move (transfer));
        return false;
    }

    DWORD length = 0;
    return GetOverlappedResult (file.get(), &transfer->overlapped, &length, FALSE) != FALSE
           && length == transfer->size();
}

/** Ends a transfer, be it over or not, and with it the use of its memory. */
void HidFileConnection::cancel (std::unique_ptr<Transfer> transfer) const
{
    if (! transfer->isUnderWay)
        return;

    CancelIoEx (file.get(), &transfer->overlapped);
    DWORD length = 0;

    // A driver that does not let go in time keeps the memory.
    if (GetOverlappedResultEx (file.get(), &transfer->overlapped, &length, millisecondsToCancel, FALSE) == FALSE
        && (GetLastError() == WAIT_TIMEOUT || GetLastError() == ERROR_IO_INCOMPLETE))
        static_cast<void> (transfer.release());
}

} // namespace wqv
