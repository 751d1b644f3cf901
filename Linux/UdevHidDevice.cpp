// SPDX-License-Identifier: GPL-3.0-or-later
// Reading a device's ids, place and report sizes from its ancestors in sysfs.

#include "UdevHidDevice.h"

#include "ReportDescriptor.h"

#include <array>
#include <charconv>
#include <fstream>
#include <span>
#include <string>

namespace wqv
{
namespace
{

/** The kernel takes no larger report descriptor. */
constexpr std::size_t largestDescriptor = 4096;

std::string_view attributeOf (udev_device* device, const char* name)
{
    const auto* const text = device != nullptr ? udev_device_get_sysattr_value (device, name) : nullptr;
    return text != nullptr ? text : "";
}

/** The number at the start of a text; 0 if there is none. */
std::int32_t numberIn (std::string_view text, int base)
{
    std::int32_t number = 0;
    std::from_chars (text.data(), text.data() + text.size(), number, base);
    return number;
}

ReportLengths reportLengthsOf (udev_device* hid)
{
    if (hid == nullptr)
        return {};

    std::ifstream file (std::string (udev_device_get_syspath (hid)) + "/report_descriptor", std::ios::binary);
    std::array<std::uint8_t, largestDescriptor> bytes {};
    file.read (reinterpret_cast<char*> (bytes.data()), bytes.size());

    return wqv::reportLengthsOf (std::span (bytes).first (static_cast<std::size_t> (file.gcount())));
}

} // namespace

std::uint64_t usbLocation (std::string_view bus, std::string_view ports)
{
    constexpr int levels = 7;

    auto location = static_cast<std::uint64_t> (numberIn (bus, 10)) & 0xFF;

    for (int level = 0; level < levels; ++level)
    {
        location = (location << 8) | (static_cast<std::uint64_t> (numberIn (ports, 10)) & 0xFF);

        const auto dot = ports.find ('.');
        ports = dot != std::string_view::npos ? ports.substr (dot + 1) : std::string_view();
    }

    return location;
}

std::optional<HidDevice> describeUsbHidDevice (udev_device& hidraw)
{
    // Parents belong to their child.
    auto* const usbDevice = udev_device_get_parent_with_subsystem_devtype (&hidraw, "usb", "usb_device");
    auto* const usbInterface = udev_device_get_parent_with_subsystem_devtype (&hidraw, "usb", "usb_interface");
    auto* const hid = udev_device_get_parent_with_subsystem_devtype (&hidraw, "hid", nullptr);

    if (usbDevice == nullptr || udev_device_get_devnode (&hidraw) == nullptr)
        return {};

    constexpr int hexadecimal = 16;
    const auto reportLengths = reportLengthsOf (hid);

    return HidDevice { .vendorId = numberIn (attributeOf (usbDevice, "idVendor"), hexadecimal),
                       .productId = numberIn (attributeOf (usbDevice, "idProduct"), hexadecimal),
                       .versionNumber = numberIn (attributeOf (usbDevice, "bcdDevice"), hexadecimal),
                       .location = usbLocation (attributeOf (usbDevice, "busnum"), attributeOf (usbDevice, "devpath")),
                       .interfaceNumber = numberIn (attributeOf (usbInterface, "bInterfaceNumber"), hexadecimal),
                       .inputReportLength = reportLengths.input,
                       .outputReportLength = reportLengths.output };
}

} // namespace wqv
