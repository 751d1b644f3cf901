// SPDX-License-Identifier: GPL-3.0-or-later
// Looking through /sys/class/udc.

#include "UsbPort.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <set>
#include <sys/file.h>
#include <system_error>
#include <unistd.h>

namespace wqv
{
namespace
{

std::set<std::string> namesIn (const std::filesystem::path& folder)
{
    std::set<std::string> names;
    std::error_code error;

    for (std::filesystem::directory_iterator next (folder, error), end; ! error && next != end; next.increment (error))
        names.insert (next->path().filename().string());

    return names;
}

std::string listOf (const std::set<std::string>& names)
{
    std::string list;

    for (const auto& name : names)
        list += (list.empty() ? "" : ", ") + name;

    return list;
}

} // namespace

UsbPort::~UsbPort()
{
    if (descriptor >= 0)
        close (descriptor);
}

std::string UsbPort::open (const std::filesystem::path& ports, const std::string& wanted)
{
    const auto names = namesIn (ports);

    if (names.empty())
        return "this machine has no USB device port: enable the board's (dtoverlay=dwc2 on a Raspberry Pi), or try "
               "modprobe dummy_hcd for one whose host is this machine itself";

    if (wanted.empty() && names.size() > 1)
        return "there is more than one USB device port: choose one of " + listOf (names) + " with --udc";

    if (! wanted.empty() && ! names.contains (wanted))
        return "there is no USB device port " + wanted + ": choose one of " + listOf (names) + " with --udc";

    portName = wanted.empty() ? *names.begin() : wanted;
    descriptor = ::open ((ports / portName).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);

    if (descriptor < 0 || flock (descriptor, LOCK_EX | LOCK_NB) != 0)
        return errno == EWOULDBLOCK ? "another wqv-controller uses the port " + portName + ": end it first"
                                    : "cannot use the port " + portName + ": " + std::system_category().message (errno);

    return {};
}

} // namespace wqv
