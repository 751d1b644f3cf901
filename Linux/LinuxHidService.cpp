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
#include <utility>

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

} // namespace

LinuxHidService::LinuxHidService() : context (udev_new())
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
    std::vector<HidDevice> list;

    if (context == nullptr)
        return list;

    const UdevPointer<udev_enumerate> enumerate (udev_enumerate_new (context.get()));

    if (enumerate == nullptr || udev_enumerate_add_match_subsystem (enumerate.get(), "hidraw") < 0
        || udev_enumerate_scan_devices (enumerate.get()) < 0)
        return list;

    for (auto* entry = udev_enumerate_get_list_entry (enumerate.get()); entry != nullptr;
         entry = udev_list_entry_get_next (entry))
    {
        const auto* const path = udev_list_entry_get_name (entry);
        const UdevPointer<udev_device> device (udev_device_new_from_syspath (context.get(), path));

        // Told by what is returned, not by a callback.
        if (device != nullptr && ! nodes.contains (path))
        {
            auto* const hearing = std::exchange (listener, nullptr);
            nodeAppeared (*device);
            listener = hearing;
        }
    }

    for (const auto& [path, node] : nodes)
        if (! node.isGone)
            list.push_back (node.device);

    return list;
}

void LinuxHidService::setListener (Listener* newListener)
{
    listener = newListener;
}

HidService::Opened LinuxHidService::open (HidDeviceId device, ReportBuffer& buffer)
{
    auto* const node = find (device);

    if (node == nullptr)
        return { .result = OpenResult::gone, .connection = nullptr };

    const auto descriptor = openLocked (node->path);
    node->error = descriptor < 0 ? errno : 0;

    if (node->error != 0)
    {
        // Before the next attempt, so that no change slips in between.
        if (isDenied (node->error))
            attributes.followFolderOf (node->path);

        retries.failed (device);
        return { .result = resultOf (node->error), .connection = nullptr };
    }

    retries.begin (device);
    const auto connection = std::make_shared<HidrawConnection> (descriptor);
    node->connection = connection;

    connection->startInput (
        buffer,
        [this, device] (std::size_t length)
        {
            if (listener != nullptr)
                listener->reportReceived (device, length);
        },
        [this, device] { nodeGone (device); });

    return { .result = OpenResult::ok, .connection = connection };
}

/** Takes all events that there are: a monitor that is not drained loses them. */
void LinuxHidService::handleMonitor()
{
    for (;;)
    {
        const UdevPointer<udev_device> device (udev_monitor_receive_device (monitor.get()));

        if (device == nullptr)
            return;

        const auto* const action = udev_device_get_action (device.get());
        const auto known = nodes.find (udev_device_get_syspath (device.get()));

        if (action != nullptr && std::string_view (action) == "remove")
        {
            if (known != nodes.end())
            {
                // The kernel keeps what it sent before it left.
                if (const auto connection = known->second.connection.lock())
                    connection->readPending();

                nodeGone (known->second.device.id);
                nodes.erase (known);
            }
        }
        else if (known == nodes.end() || known->second.isGone)
        {
            nodeAppeared (*device);
        }
        else if (known->second.error != 0)
        {
            // The rule may have been installed meanwhile.
            attachAgain (known->second);
        }
    }
}

/** Somebody may have been given access, as by a session that has become active, which udev does not tell. */
void LinuxHidService::handleAttributes (std::string_view fileName)
{
    const auto changed = std::ranges::find_if (nodes,
                                               [fileName] (const auto& entry)
                                               {
                                                   const auto& node = entry.second;
                                                   return isDenied (node.error) && ! node.isGone
                                                          && std::filesystem::path (node.path).filename() == fileName;
                                               });

    if (changed != nodes.end())
        attachAgain (changed->second);
}

void LinuxHidService::attachAgain (Node& closedNode)
{
    retries.begin (closedNode.device.id);
    tryClosedNode (closedNode.device.id);
}

void LinuxHidService::nodeAppeared (udev_device& hidraw)
{
    auto device = describeUsbHidDevice (hidraw);

    if (! device)
        return;

    device->id = ++lastId;
    nodes[udev_device_get_syspath (&hidraw)] = { .device = *device, .path = udev_device_get_devnode (&hidraw) };
    retries.begin (device->id);

    if (listener != nullptr)
        listener->deviceAttached (*device);
}

/** The hang-up of the node and udev's own word may both tell this; the first counts. */
void LinuxHidService::nodeGone (HidDeviceId device)
{
    auto* const node = find (device);

    if (node == nullptr)
        return;

    // It stays known: until udev removes it, a new list of the system's devices still has it.
    node->isGone = true;
    retries.end (device);

    if (listener != nullptr)
        listener->deviceRemoved (device);
}

/** To the listener a device that has become accessible is one that was just attached. */
void LinuxHidService::tryClosedNode (HidDeviceId device)
{
    if (const auto* const node = find (device); node != nullptr && listener != nullptr)
        listener->deviceAttached (HidDevice (node->device));
}

void LinuxHidService::sayThatItIsClosed (HidDeviceId device)
{
    const auto* const node = find (device);

    if (node == nullptr)
        return;

    const auto reason =
        node->error == EWOULDBLOCK ? "in use by another program" : std::generic_category().message (node->error);
    const auto advice =
        isDenied (node->error) ? std::string (": is the udev rule file ") + ruleFile + " installed?" : "";

    complain ("cannot open " + node->path + ": " + reason + advice);
}

/** The node of a device that has not gone. */
LinuxHidService::Node* LinuxHidService::find (HidDeviceId device)
{
    const auto found = std::ranges::find_if (
        nodes, [device] (const auto& entry) { return entry.second.device.id == device && ! entry.second.isGone; });

    return found != nodes.end() ? &found->second : nullptr;
}

} // namespace wqv
