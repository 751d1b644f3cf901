// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices of a Windows system, by SetupAPI and hid.dll.

#pragma once

#include "HidService.h"
#include "MessageWindow.h"
#include "OpenRetries.h"

#include <windows.h>

#include <map>
#include <memory>
#include <string>

namespace wqv
{

class HidFileConnection;

/** Runs on the message loop alone: no thread, no polling. What nobody would learn otherwise it says on standard error: that no
    news of devices comes, and which device could not be opened, and why. */
class WindowsHidService final : public HidService
{
public:
    WindowsHidService();
    ~WindowsHidService() override;

    [[nodiscard]] std::vector<HidDevice> devices() override;
    void setListener (Listener* newListener) override;
    [[nodiscard]] Opened open (HidDeviceId device, ReportBuffer& buffer) override;

private:
    struct Interface
    {
        HidDevice device;
        bool isGone = false; ///< but the system's list may still have it
        DWORD error = 0;     ///< of its last open
        std::weak_ptr<HidFileConnection> connection {};
    };

    /** By their paths, which a device that comes back may have again. */
    using Interfaces = std::map<std::wstring, Interface>;

    bool handleMessage (UINT message, WPARAM first, LPARAM second);
    void handleDeviceChange (WPARAM event, const void* details);
    void interfaceAppeared (const std::wstring& path);
    void deviceHasLeft (const Interface& known);
    void deviceGone (HidDeviceId device);
    void tryClosedDevice (HidDeviceId device);
    void sayThatItIsClosed (HidDeviceId device);
    [[nodiscard]] Interfaces::iterator find (HidDeviceId device);

    Interfaces interfaces;
    OpenRetries retries { [this] (HidDeviceId device) { tryClosedDevice (device); },
                          [this] (HidDeviceId device) { sayThatItIsClosed (device); } };
    HidDeviceId lastId = 0;
    Listener* listener = nullptr;
    MessageWindow window;
    HDEVNOTIFY news = nullptr;
};

} // namespace wqv
