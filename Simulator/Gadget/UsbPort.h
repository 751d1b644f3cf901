// SPDX-License-Identifier: GPL-3.0-or-later
// The USB device ports of this machine: choosing one, and holding it.

#pragma once

#include <filesystem>
#include <string>

namespace wqv
{

/** A device port ("UDC") that no other wqv-controller uses, for as long as the object lives. Any thread. */
class UsbPort
{
public:
    UsbPort() = default;
    ~UsbPort();

    UsbPort (const UsbPort&) = delete;
    UsbPort& operator= (const UsbPort&) = delete;

    /** Chooses a port and locks it; the lock ends with the process in every case.
        @param ports   the folder in which the system lists its ports: /sys/class/udc
        @param wanted  its name; empty for the only one that there is
        @returns what went wrong and what to do about it, for people; empty on success */
    [[nodiscard]] std::string open (const std::filesystem::path& ports, const std::string& wanted);

    /** Empty before open(). */
    [[nodiscard]] const std::string& name() const { return portName; }

private:
    std::string portName;
    int descriptor = -1;
};

} // namespace wqv
