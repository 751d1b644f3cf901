// SPDX-License-Identifier: GPL-3.0-or-later
// The HID devices of a Windows system, by SetupAPI and hid.dll.

#pragma once

#include "HidService.h"
#include "KnownDevices.h"
#include "MessageWindow.h"

#include <windows.h>

#include <memory>
#include <string>

namespace wqv
{

class HidFileConnection;

/** Runs on the message loop alone: no thread, and no polling but for two seconds after news. What nobody would learn otherwise
    it says on standard error: that no news of devices comes, and which device could not be opened, and why. */
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
        std::wstring path;
        DWORD error = 0; ///< of its last open
        std::weak_ptr<HidFileConnection> connection {};
    };

    /** By their paths. */
    using Interfaces = KnownDevices<std::wstring, Interface>;

    bool handleMessage (UINT message, WPARAM first, LPARAM second);
    void handleDeviceChange (WPARAM event, const void* details);
    void searchForAWhile();
    void searchAgain();
    void deviceHasLeft (const Interfaces::Entry& known);
    void deviceGone (HidDeviceId device);

    Interfaces interfaces;
    int searchesLeft = 0;
    MessageWindow window;
    HDEVNOTIFY news = nullptr;
};

} // namespace wqv
