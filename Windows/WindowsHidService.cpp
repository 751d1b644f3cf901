// SPDX-License-Identifier: GPL-3.0-or-later
// The list of HID devices, news of them by messages, and opening them.

#include "WindowsHidService.h"

#include "Complaint.h"
#include "HidFileConnection.h"
#include "HidInterface.h"
#include "WideText.h"

#include <dbt.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace wqv
{
namespace
{

constexpr UINT readHasEnded = WM_APP;
constexpr UINT_PTR searchTimer = 1;
constexpr UINT millisecondsBetweenSearches = 100;
constexpr int searchesAfterNews = 20;

HidService::OpenResult resultOf (DWORD error)
{
    switch (error)
    {
        case ERROR_SUCCESS: return HidService::OpenResult::ok;
        case ERROR_ACCESS_DENIED: return HidService::OpenResult::denied;
        case ERROR_SHARING_VIOLATION: return HidService::OpenResult::inUse;
        default: return HidService::OpenResult::gone;
    }
}

/** Opens a device for this program alone: two updaters must not hold one controller. */
WindowsHandle openAlone (const std::wstring& path)
{
    constexpr DWORD sharing = 0;
    return WindowsHandle (CreateFileW (
        path.c_str(), GENERIC_READ | GENERIC_WRITE, sharing, nullptr, OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr));
}

void sayThatItIsClosed (const std::wstring& path, DWORD error)
{
    complain ("cannot open " + narrow (path) + ": "
              + (resultOf (error) == HidService::OpenResult::inUse
                     ? std::string ("in use by another program")
                     : std::system_category().message (static_cast<int> (error))));
}

} // namespace

WindowsHidService::WindowsHidService()
    : interfaces ([] (const Interfaces::Entry& known) { sayThatItIsClosed (known.detail.path, known.detail.error); }),
      window (MessageWindow::Kind::messageOnly,
              [this] (UINT message, WPARAM first, LPARAM second) { return handleMessage (message, first, second); })
{
    DEV_BROADCAST_DEVICEINTERFACE_W ofHidDevices {};
    ofHidDevices.dbcc_size = sizeof (ofHidDevices);
    ofHidDevices.dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    ofHidDevices.dbcc_classguid = hidInterfaceClass();

    // Before anything is listed, so that nothing slips in between.
    if (window.get() != nullptr)
        news = RegisterDeviceNotificationW (window.get(), &ofHidDevices, DEVICE_NOTIFY_WINDOW_HANDLE);

    if (news == nullptr)
        complain ("no news of devices: a controller cannot be seen when it is plugged in");
}

WindowsHidService::~WindowsHidService()
{
    if (news != nullptr)
        UnregisterDeviceNotification (news);
}

std::vector<HidDevice> WindowsHidService::devices()
{
    for (const auto& path : presentHidInterfaces())
        if (interfaces.at (path) == nullptr)
            if (const auto device = describeHidInterface (path))
                interfaces.list (path, *device, { .path = path });

    return interfaces.attached();
}

void WindowsHidService::setListener (Listener* newListener)
{
    interfaces.setListener (newListener);
}

HidService::Opened WindowsHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    auto* const known = interfaces.find (device);

    if (known == nullptr)
        return { .result = OpenResult::gone, .connection = nullptr };

    auto& [path, error, lastConnection] = known->detail;
    auto file = openAlone (path);
    error = file.isValid() ? ERROR_SUCCESS : GetLastError();

    if (error != ERROR_SUCCESS)
    {
        interfaces.wasNotOpened (device);
        return { .result = resultOf (error), .connection = nullptr };
    }

    interfaces.wasOpened (device);
    const auto connection = std::make_shared<HidFileConnection> (std::move (file), known->device.inputReportLength);
    lastConnection = connection;

    connection->startInput (
        buffer,
        { .window = window.get(), .message = readHasEnded, .device = device },
        [this, device] (std::size_t length) { interfaces.reportReceived (device, length); },
        [this, device] { deviceGone (device); });

    return { .result = OpenResult::ok, .connection = connection };
}

bool WindowsHidService::handleMessage (UINT message, WPARAM first, LPARAM second)
{
    if (message == WM_DEVICECHANGE)
    {
        // NOLINTNEXTLINE (performance-no-int-to-ptr): so the system hands pointers on
        handleDeviceChange (first, reinterpret_cast<const void*> (second));
        return true;
    }

    if (message == WM_TIMER && first == searchTimer)
    {
        searchAgain();
        return true;
    }

    if (message != readHasEnded)
        return false;

    if (const auto* const known = interfaces.find (first))
        if (const auto connection = known->detail.connection.lock())
            connection->readPending();

    return true;
}

void WindowsHidService::handleDeviceChange (WPARAM event, const void* details)
{
    if (event != DBT_DEVICEARRIVAL && event != DBT_DEVICEREMOVECOMPLETE)
        return;

    const auto type = static_cast<const DEV_BROADCAST_HDR*> (details)->dbch_devicetype;

    if (type == DBT_DEVTYP_HANDLE)
    {
        const auto* const handle = static_cast<const DEV_BROADCAST_HANDLE*> (details)->dbch_handle;
        const auto open = std::ranges::find_if (interfaces.all(),
                                                [handle] (const auto& entry)
                                                {
                                                    const auto connection = entry.second.detail.connection.lock();
                                                    return connection != nullptr && connection->handle() == handle;
                                                });

        if (open != interfaces.all().end())
            deviceHasLeft (open->second);
    }
    else if (type == DBT_DEVTYP_DEVICEINTERFACE)
    {
        const auto path = normalised (static_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*> (details)->dbcc_name);
        const auto* const known = interfaces.at (path);

        if (event == DBT_DEVICEARRIVAL && (known == nullptr || known->isGone))
        {
            if (const auto device = describeHidInterface (path))
                interfaces.appeared (path, *device, { .path = path });
        }
        else if (event == DBT_DEVICEREMOVECOMPLETE && known != nullptr)
        {
            deviceHasLeft (*known);
            interfaces.forget (path);
        }

        searchForAWhile();
    }
}

/** News may come before the device can be described, or of one that came back at the same path before it was told as gone: for two
    seconds the system's list is searched for what is not known. */
void WindowsHidService::searchForAWhile()
{
    searchesLeft = searchesAfterNews;
    SetTimer (window.get(), searchTimer, millisecondsBetweenSearches, nullptr);
}

void WindowsHidService::searchAgain()
{
    if (--searchesLeft <= 0)
        KillTimer (window.get(), searchTimer);

    for (const auto& path : presentHidInterfaces())
        if (interfaces.at (path) == nullptr)
            if (const auto device = describeHidInterface (path))
                interfaces.appeared (path, *device, { .path = path });
}

/** The system's word overtakes the messages that tell of reports: first those are read that the device sent before it left. */
void WindowsHidService::deviceHasLeft (const Interfaces::Entry& known)
{
    const auto device = known.device.id;

    if (const auto connection = known.detail.connection.lock())
        connection->readPending();

    deviceGone (device);
}

/** Its connection and the system may both tell this, in two ways; the first counts. */
void WindowsHidService::deviceGone (HidDeviceId device)
{
    if (const auto* const known = interfaces.find (device))
        if (const auto connection = known->detail.connection.lock())
            connection->giveUp();

    interfaces.gone (device);
}

} // namespace wqv
