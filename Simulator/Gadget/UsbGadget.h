// SPDX-License-Identifier: GPL-3.0-or-later
// A USB HID device that this machine is to its host, as Linux's configfs describes it ("gadget").

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace wqv
{

/** What a gadget shows to its host. */
struct GadgetDescription
{
    std::uint16_t vendorId = 0;
    std::uint16_t productId = 0;
    std::vector<std::uint8_t> reportLengths; ///< for each interface, bytes of its input and of its output report
};

/** One gadget with HID interfaces, unplugged at first. Whatever an earlier process left of it is removed when it is
    created; its destructor removes it. Any one thread.

    What can fail returns what went wrong and what to do about it, for people; an empty text is success.
*/
class UsbGadget
{
public:
    /** @param gadgetsFolder  where configfs has the gadgets: /sys/kernel/config/usb_gadget
        @param portToUse      the name of a USB device port; a gadget is known again by it */
    UsbGadget (std::filesystem::path gadgetsFolder, std::string portToUse, GadgetDescription whatToShow);
    ~UsbGadget();

    UsbGadget (const UsbGadget&) = delete;
    UsbGadget& operator= (const UsbGadget&) = delete;

    [[nodiscard]] std::string create();

    /** Plugs it in, with a version number in BCD. */
    [[nodiscard]] std::string plugIn (std::int32_t bcdDevice);

    void unplug() const;

    /** The name of the node below /dev for an interface's reports, counted from 0. The kernel makes it at plugIn, with
        the same name each time. Empty before create(). */
    [[nodiscard]] std::string nodeOf (std::size_t interface) const;

    /** Unplugs it and removes all of it. Nothing happens where there is nothing. */
    void remove() const;

private:
    [[nodiscard]] std::filesystem::path functionOf (std::size_t interface) const;

    const std::filesystem::path gadgets;
    const std::string port;
    const GadgetDescription description;
    const std::filesystem::path gadget;
};

/** A report descriptor with one input and one output report of that many bytes, without report ids. */
[[nodiscard]] std::vector<std::uint8_t> reportDescriptor (std::uint8_t reportLength);

} // namespace wqv
