// SPDX-License-Identifier: GPL-3.0-or-later
// The made-up hidraw node: its reads, writes and its end.

#include "MockController.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::size_t reportsKept = 63;
constexpr auto generationKey = "generation";

/** For what the made-up system cannot do without. */
void require (bool condition, const char* what)
{
    if (! condition)
        g_error ("%s: %s", what, g_strerror (errno));
}

} // namespace

MockController::MockController (TestBed& bedToUse, UsbHid descriptionToUse, FaultScript faults)
    : controller (std::move (faults)),
      bed (bedToUse),
      description (std::move (descriptionToUse)),
      handlers (umockdev_ioctl_base_new())
{
    g_signal_connect (handlers.get(), "client-connected", G_CALLBACK (clientConnected), this);
    g_signal_connect (handlers.get(), "handle-read", G_CALLBACK (read), this);
    g_signal_connect (handlers.get(), "handle-write", G_CALLBACK (write), this);

    // Once, not with every plug: a program that still has an old descriptor is still served.
    require (umockdev_testbed_attach_ioctl (
                 bed.handle(), TestBed::pathOf (description.node).c_str(), handlers.get(), nullptr)
                 != 0,
             "attaching to the node");
}

MockController::~MockController()
{
    if (terminal >= 0)
        unplug();

    umockdev_testbed_detach_ioctl (bed.handle(), TestBed::pathOf (description.node).c_str(), nullptr);
    g_signal_handlers_disconnect_by_data (handlers.get(), this);
}

void MockController::plugIn()
{
    const std::scoped_lock guard (lock);
    controller.happens ({ .kind = VirtualController::Event::Kind::plugIn });
    attach();
}

void MockController::unplug()
{
    hangUp();
    remove();
}

void MockController::hangUp()
{
    awaitConnections();
    const std::scoped_lock guard (lock);
    controller.happens ({ .kind = VirtualController::Event::Kind::unplug });
    endNode();
}

void MockController::remove()
{
    bed.remove (description.node);
}

void MockController::setMode (mode_t mode) const
{
    require (fchmod (nodesEnd, mode) == 0, "permissions of the node");
}

void MockController::touch() const
{
    const auto link = bed.folder().concat (TestBed::pathOf (description.node));
    require (utimensat (AT_FDCWD, link.c_str(), nullptr, AT_SYMLINK_NOFOLLOW) == 0, "time of the node");
}

bool MockController::lockNode() const
{
    return flock (nodesEnd, LOCK_EX | LOCK_NB) == 0;
}

void MockController::unlockNode() const
{
    flock (nodesEnd, LOCK_UN);
}

void MockController::send (std::span<const std::vector<std::uint8_t>> newReports)
{
    const std::scoped_lock guard (lock);

    for (const auto& report : newReports)
        enqueue (report);
}

/** Which node a descriptor is of is only known once its connection has been accepted, which the opening does not wait
    for. Connections are accepted in their order, so this one is the last. */
void MockController::awaitConnections() const
{
    if (const auto last = open (TestBed::pathOf (description.node).c_str(), O_RDWR | O_CLOEXEC | O_NOCTTY); last >= 0)
    {
        int available = 0;
        ioctl (last, FIONREAD, &available);
        close (last);
    }
}

void MockController::makeNode()
{
    terminal = posix_openpt (O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    require (terminal >= 0 && grantpt (terminal) == 0 && unlockpt (terminal) == 0, "a pseudo-terminal");

    std::array<char, 64> name {};
    require (ptsname_r (terminal, name.data(), name.size()) == 0, "its name");
    nodesEnd = open (name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);

    termios settings {};
    cfmakeraw (&settings);
    require (nodesEnd >= 0 && tcsetattr (nodesEnd, TCSANOW, &settings) == 0, "its settings");

    std::filesystem::create_directories (bed.folder() / "dev");
    std::filesystem::create_symlink (name.data(), bed.folder().concat (TestBed::pathOf (description.node)));
}

void MockController::endNode()
{
    ++generation;
    reports.clear();

    for (auto* const end : { &terminal, &nodesEnd })
        if (const auto descriptor = std::exchange (*end, -1); descriptor >= 0)
            close (descriptor);
}

void MockController::attach()
{
    makeNode();
    description.versionNumber = controller.versionNumber();
    bed.add (description);
}

/** The byte is written after the report is there, and bytes are taken away only when no report is: so whoever waits wakes
    for every report, and may find none now and then. */
void MockController::enqueue (const std::vector<std::uint8_t>& report)
{
    if (reports.size() >= reportsKept)
        return;

    reports.push_back (report);
    require (::write (terminal, "r", 1) == 1, "waking who waits for reports");
}

void MockController::clientConnected (UMockdevIoctlBase*, UMockdevIoctlClient* client, MockController* self)
{
    const std::scoped_lock guard (self->lock);
    g_object_set_data (G_OBJECT (client), generationKey, GUINT_TO_POINTER (self->generation));
}

bool MockController::isAlive (UMockdevIoctlClient* client) const
{
    return GPOINTER_TO_UINT (g_object_get_data (G_OBJECT (client), generationKey)) == generation;
}

gboolean MockController::read (UMockdevIoctlBase*, UMockdevIoctlClient* client, MockController* self)
{
    const std::scoped_lock guard (self->lock);
    auto* const memory = umockdev_ioctl_client_get_arg (client);

    if (! self->isAlive (client))
    {
        umockdev_ioctl_client_complete (client, -1, EIO);
    }
    else if (self->reports.empty())
    {
        tcflush (self->nodesEnd, TCIFLUSH);
        umockdev_ioctl_client_complete (client, -1, EAGAIN);
    }
    else
    {
        auto report = std::move (self->reports.front());
        self->reports.pop_front();
        report.resize (std::min (report.size(), static_cast<std::size_t> (memory->data_len)));
        umockdev_ioctl_data_update (memory, 0, report.data(), static_cast<int> (report.size()));
        umockdev_ioctl_client_complete (client, static_cast<glong> (report.size()), 0);
    }

    return TRUE;
}

gboolean MockController::write (UMockdevIoctlBase*, UMockdevIoctlClient* client, MockController* self)
{
    const std::scoped_lock guard (self->lock);
    const auto* const memory = umockdev_ioctl_client_get_arg (client);
    const std::span bytes (memory->data, static_cast<std::size_t> (memory->data_len));
    const auto error = self->isAlive (client) ? self->take (bytes) : ENODEV;

    umockdev_ioctl_client_complete (client, error == 0 ? memory->data_len : -1, error);
    return TRUE;
}

/** @returns the error that the writer gets; 0 for none */
int MockController::take (std::span<const std::uint8_t> bytes)
{
    // The report id, which the device has none of.
    if (bytes.empty() || bytes.front() != 0)
        return EINVAL;

    const auto reaction = controller.receive (bytes.subspan (1));

    if (! reaction.isTaken)
        return ETIMEDOUT;

    for (const auto& event : reaction.events)
    {
        controller.happens (event);

        switch (event.kind)
        {
            case VirtualController::Event::Kind::report: enqueue (event.report); break;
            case VirtualController::Event::Kind::plugIn: attach(); break;

            case VirtualController::Event::Kind::unplug:
                endNode();
                remove();
                break;
        }
    }

    return 0;
}

} // namespace wqv
