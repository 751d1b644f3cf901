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

} // namespace

WindowsHidService::WindowsHidService()
    : window (MessageWindow::Kind::messageOnly,
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
    // Told by what is returned, not by a callback.
    auto* const hearing = std::exchange (listener, nullptr);

    for (const auto& path : presentHidInterfaces())
        if (! interfaces.contains (path))
            interfaceAppeared (path);

    listener = hearing;
    std::vector<HidDevice> list;

    for (const auto& [path, known] : interfaces)
        if (! known.isGone)
            list.push_back (known.device);

    return list;
}

void WindowsHidService::setListener (Listener* newListener)
{
    listener = newListener;
}

HidService::Opened WindowsHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    const auto found = find (device);

    if (found == interfaces.end())
        return { .result = OpenResult::gone, .connection = nullptr };

    auto& [path, known] = *found;
    auto file = openAlone (path);
    known.error = file.isValid() ? ERROR_SUCCESS : GetLastError();

    if (known.error != ERROR_SUCCESS)
    {
        retries.failed (device);
        return { .result = resultOf (known.error), .connection = nullptr };
    }

    retries.begin (device);
    const auto connection = std::make_shared<HidFileConnection> (std::move (file), known.device.inputReportLength);
    known.connection = connection;

    connection->startInput (
        buffer,
        { .window = window.get(), .message = readHasEnded, .device = device },
        [this, device] (std::size_t length)
        {
            if (listener != nullptr)
                listener->reportReceived (device, length);
        },
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

    if (message != readHasEnded)
        return false;

    if (const auto found = find (first); found != interfaces.end())
        if (const auto connection = found->second.connection.lock())
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
        const auto open = std::ranges::find_if (interfaces,
                                                [handle] (const auto& entry)
                                                {
                                                    const auto connection = entry.second.connection.lock();
                                                    return connection != nullptr && connection->handle() == handle;
                                                });

        if (open != interfaces.end())
            deviceHasLeft (open->second);
    }
    else if (type == DBT_DEVTYP_DEVICEINTERFACE)
    {
        const auto path = normalised (static_cast<const DEV_BROADCAST_DEVICEINTERFACE_W*> (details)->dbcc_name);
        const auto known = interfaces.find (path);

        if (event == DBT_DEVICEARRIVAL && (known == interfaces.end() || known->second.isGone))
        {
            interfaceAppeared (path);
        }
        else if (event == DBT_DEVICEREMOVECOMPLETE && known != interfaces.end())
        {
            deviceHasLeft (known->second);
            interfaces.erase (path);
        }
    }
}

void WindowsHidService::interfaceAppeared (const std::wstring& path)
{
    auto device = describeHidInterface (path);

    if (! device)
        return;

    device->id = ++lastId;
    interfaces[path] = { .device = *device };
    retries.begin (device->id);

    if (listener != nullptr)
        listener->deviceAttached (*device);
}

/** The system's word overtakes the messages that tell of reports: first those are read that the device sent before it left. */
void WindowsHidService::deviceHasLeft (const Interface& known)
{
    const auto device = known.device.id;

    if (const auto connection = known.connection.lock())
        connection->readPending();

    deviceGone (device);
}

/** Its connection and the system may both tell this, in two ways; the first counts. */
void WindowsHidService::deviceGone (HidDeviceId device)
{
    const auto found = find (device);

    if (found == interfaces.end())
        return;

    // It stays known: until the system removes it, a new list may still have it.
    found->second.isGone = true;
    retries.end (device);

    if (const auto connection = found->second.connection.lock())
        connection->giveUp();

    if (listener != nullptr)
        listener->deviceRemoved (device);
}

/** To the listener a device that has become accessible is one that was just attached. */
void WindowsHidService::tryClosedDevice (HidDeviceId device)
{
    if (const auto found = find (device); found != interfaces.end() && listener != nullptr)
        listener->deviceAttached (HidDevice (found->second.device));
}

void WindowsHidService::sayThatItIsClosed (HidDeviceId device)
{
    const auto found = find (device);

    if (found == interfaces.end())
        return;

    const auto& [path, known] = *found;
    complain ("cannot open " + narrow (path) + ": "
              + (resultOf (known.error) == OpenResult::inUse
                     ? std::string ("in use by another program")
                     : std::system_category().message (static_cast<int> (known.error))));
}

/** A device that has not gone. */
WindowsHidService::Interfaces::iterator WindowsHidService::find (HidDeviceId device)
{
    return std::ranges::find_if (
        interfaces, [device] (const auto& entry) { return entry.second.device.id == device && ! entry.second.isGone; });
}

} // namespace wqv
