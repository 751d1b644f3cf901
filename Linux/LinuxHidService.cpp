// SPDX-License-Identifier: GPL-3.0-or-later
// The list of hidraw nodes, news of them from udev, and opening them.

#include "LinuxHidService.h"

#include "Complaint.h"
#include "HidrawConnection.h"

#include <juce_events/juce_events.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string_view>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace wqv
{
namespace
{

constexpr const char* ruleFile = "70-wqv-krv20.rules";

bool isDenied (int error)
{
    return error == EACCES || error == EPERM;
}

/** Whether somebody tells of devices that come: where nobody does, as in a container, libudev listens all the same. */
bool isUdevRunning()
{
    return access ("/run/udev/control", F_OK) == 0;
}

/** Opens a node for this program alone: two updaters must not hold one controller. The lock goes with the descriptor.
    @returns -1 with errno set, which is EWOULDBLOCK if another program has the lock */
int openLocked (const std::string& path)
{
    const auto descriptor = open (path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);

    if (descriptor < 0 || flock (descriptor, LOCK_EX | LOCK_NB) == 0)
        return descriptor;

    const auto error = errno;
    close (descriptor);
    errno = error;
    return -1;
}

HidService::OpenResult resultOf (int error)
{
    if (error == EWOULDBLOCK)
        return HidService::OpenResult::inUse;

    return isDenied (error) ? HidService::OpenResult::denied : HidService::OpenResult::gone;
}

void sayThatNothingIsSeen (const char* reason)
{
    complain (std::string (reason) + ": a controller cannot be seen when it is plugged in");
}

void sayThatItIsClosed (const std::string& path, int error)
{
    const auto reason = error == EWOULDBLOCK ? "in use by another program" : std::generic_category().message (error);
    const auto advice = isDenied (error) ? std::string (": is the udev rule file ") + ruleFile + " installed?" : "";
    complain ("cannot open " + path + ": " + reason + advice);
}

} // namespace

LinuxHidService::LinuxHidService()
    : context (udev_new()),
      nodes ([] (const Nodes::Entry& node) { sayThatItIsClosed (node.detail.path, node.detail.error); })
{
    if (context != nullptr)
        monitor.reset (udev_monitor_new_from_netlink (context.get(), "udev"));

    if (monitor == nullptr || udev_monitor_filter_add_match_subsystem_devtype (monitor.get(), "hidraw", nullptr) < 0
        || udev_monitor_enable_receiving (monitor.get()) < 0)
    {
        sayThatNothingIsSeen ("no udev in reach");
        monitor.reset();
        return;
    }

    if (! isUdevRunning())
        sayThatNothingIsSeen ("udev does not run here");

    // Before anything is listed, so that nothing slips in between.
    juce::LinuxEventLoop::registerFdCallback (udev_monitor_get_fd (monitor.get()), [this] (int) { handleMonitor(); });
}

LinuxHidService::~LinuxHidService()
{
    if (monitor != nullptr)
        juce::LinuxEventLoop::unregisterFdCallback (udev_monitor_get_fd (monitor.get()));
}

std::vector<HidDevice> LinuxHidService::devices()
{
    if (context == nullptr)
        return {};

    const UdevPointer<udev_enumerate> enumerate (udev_enumerate_new (context.get()));

    if (enumerate == nullptr || udev_enumerate_add_match_subsystem (enumerate.get(), "hidraw") < 0
        || udev_enumerate_scan_devices (enumerate.get()) < 0)
        return nodes.attached();

    for (auto* entry = udev_enumerate_get_list_entry (enumerate.get()); entry != nullptr;
         entry = udev_list_entry_get_next (entry))
    {
        const auto* const path = udev_list_entry_get_name (entry);
        const UdevPointer<udev_device> hidraw (udev_device_new_from_syspath (context.get(), path));

        if (hidraw != nullptr && nodes.at (path) == nullptr)
            if (const auto device = describeUsbHidDevice (*hidraw))
                nodes.list (path, *device, { .path = udev_device_get_devnode (hidraw.get()) });
    }

    return nodes.attached();
}

void LinuxHidService::setListener (Listener* newListener)
{
    nodes.setListener (newListener);
}

HidService::Opened LinuxHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    auto* const known = nodes.find (device);

    if (known == nullptr)
        return { .result = OpenResult::gone, .connection = nullptr };

    auto& node = known->detail;
    const auto descriptor = openLocked (node.path);
    node.error = descriptor < 0 ? errno : 0;

    if (node.error != 0)
    {
        // Before the next attempt, so that no change slips in between.
        if (isDenied (node.error))
            attributes.followFolderOf (node.path);

        nodes.wasNotOpened (device);
        return { .result = resultOf (node.error), .connection = nullptr };
    }

    nodes.wasOpened (device);
    const auto connection = std::make_shared<HidrawConnection> (descriptor);
    node.connection = connection;

    connection->startInput (
        buffer,
        [this, device] (std::size_t length) { nodes.reportReceived (device, length); },
        [this, device] { nodes.gone (device); });

    return { .result = OpenResult::ok, .connection = connection };
}

/** Takes all events that there are: a monitor that is not drained loses them. */
void LinuxHidService::handleMonitor()
{
    for (;;)
    {
        const UdevPointer<udev_device> hidraw (udev_monitor_receive_device (monitor.get()));

        if (hidraw == nullptr)
            return;

        const auto* const action = udev_device_get_action (hidraw.get());
        const std::string path = udev_device_get_syspath (hidraw.get());
        const auto* const known = nodes.at (path);

        if (action != nullptr && std::string_view (action) == "remove")
        {
            if (known == nullptr)
                continue;

            // The kernel keeps what it sent before it left.
            if (const auto connection = known->detail.connection.lock())
                connection->readPending();

            nodes.gone (known->device.id);
            nodes.forget (path);
        }
        else if (known == nullptr || known->isGone)
        {
            // One that has hung up stays known until udev says that it was removed, or shows it anew.
            if (const auto device = describeUsbHidDevice (*hidraw))
                nodes.appeared (path, *device, { .path = udev_device_get_devnode (hidraw.get()) });
        }
        else if (known->detail.error != 0)
        {
            // The rule may have been installed meanwhile.
            nodes.attachAgain (known->device.id);
        }
    }
}

/** Somebody may have been given access, as by a session that has become active, which udev does not tell. */
void LinuxHidService::handleAttributes (std::string_view fileName)
{
    const auto changed = std::ranges::find_if (nodes.all(),
                                               [fileName] (const auto& entry)
                                               {
                                                   const auto& node = entry.second.detail;
                                                   return isDenied (node.error) && ! entry.second.isGone
                                                          && std::filesystem::path (node.path).filename() == fileName;
                                               });

    if (changed != nodes.all().end())
        nodes.attachAgain (changed->second.device.id);
}

} // namespace wqv
