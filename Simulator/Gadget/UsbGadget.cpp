// SPDX-License-Identifier: GPL-3.0-or-later
// Folders, attributes and links below /sys/kernel/config/usb_gadget.

#include "UsbGadget.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <fstream>
#include <span>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

namespace fs = std::filesystem;

constexpr auto american = "strings/0x409";
constexpr auto configuration = "configs/c.1";

std::string attributeValue (std::uint32_t number)
{
    std::array<char, 8> digits {};
    const auto end = std::to_chars (digits.data(), digits.data() + digits.size(), number, 16).ptr;
    return "0x" + std::string (digits.data(), end);
}

/** An attribute's value goes to the kernel by one write. In configfs each attribute is there already; in a plain folder it
    is made. @returns 0, or the error's number */
int writeAttribute (const fs::path& attribute, std::string_view value)
{
    const auto descriptor = open (attribute.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);

    if (descriptor < 0)
        return errno;

    const auto error = write (descriptor, value.data(), value.size()) < 0 ? errno : 0;
    close (descriptor);
    return error;
}

/** Fills a gadget's folder. After a step that failed, the others do nothing. */
class Builder
{
public:
    void makeFolder (const fs::path& folder, const std::string& advice = {})
    {
        std::error_code error;

        if (problem.empty() && ! fs::create_directory (folder, error) && error)
            problem = "cannot make " + folder.string() + ": "
                      + (error == std::errc::no_such_file_or_directory && ! advice.empty() ? advice
                         : error == std::errc::permission_denied                           ? "only root may, try sudo"
                                                                                           : error.message());
    }

    void set (const fs::path& attribute, std::string_view value)
    {
        if (! problem.empty())
            return;

        if (const auto error = writeAttribute (attribute, value); error != 0)
            problem = "cannot write " + attribute.string() + ": " + std::system_category().message (error);
    }

    void link (const fs::path& target, const fs::path& name)
    {
        std::error_code error;

        if (problem.empty())
            fs::create_symlink (target, name, error);

        if (error)
            problem = "cannot make " + name.string() + ": " + error.message();
    }

    std::string problem;
};

std::vector<fs::path> entriesOf (const fs::path& folder)
{
    std::vector<fs::path> entries;
    std::error_code error;

    for (fs::directory_iterator next (folder, error), end; ! error && next != end; next.increment (error))
        entries.push_back (next->path());

    return entries;
}

/** Removes the folders and links in a folder that can be removed. In configfs an attribute goes with its folder. */
void removeEntries (const fs::path& folder)
{
    std::error_code ignored;

    for (const auto& entry : entriesOf (folder))
        if (fs::is_symlink (entry, ignored) || fs::is_directory (entry, ignored))
            fs::remove (entry, ignored);
}

} // namespace

std::vector<std::uint8_t> reportDescriptor (std::uint8_t reportLength)
{
    return {
        0x06, 0x00,         0xFF, // usage page: the vendor's own
        0x09, 0x01,               // usage 1
        0xA1, 0x01,               // collection: application
        0x15, 0x00,               //   logical minimum 0
        0x26, 0xFF,         0x00, //   logical maximum 255
        0x75, 0x08,               //   report size: 8 bits
        0x95, reportLength,       //   report count
        0x09, 0x01,               //   usage 1
        0x81, 0x02,               //   input: data, variable, absolute
        0x09, 0x01,               //   usage 1
        0x91, 0x02,               //   output: data, variable, absolute
        0xC0                      // end of the collection
    };
}

UsbGadget::UsbGadget (fs::path gadgetsFolder, std::string portToUse, GadgetDescription whatToShow)
    : gadgets (std::move (gadgetsFolder)),
      port (std::move (portToUse)),
      description (std::move (whatToShow)),
      gadget (gadgets / ("wqv-krv20." + port))
{
}

UsbGadget::~UsbGadget()
{
    remove();
}

std::string UsbGadget::create()
{
    std::error_code error;

    if (! fs::is_directory (gadgets, error))
        return "there is no " + gadgets.string() + ": try modprobe libcomposite, and then, if that is empty, "
               + "mount -t configfs configfs " + gadgets.parent_path().string();

    remove();

    Builder builder;
    builder.makeFolder (gadget);
    builder.set (gadget / "idVendor", attributeValue (description.vendorId));
    builder.set (gadget / "idProduct", attributeValue (description.productId));
    builder.makeFolder (gadget / "strings");
    builder.makeFolder (gadget / american);
    builder.set (gadget / american / "product", "WQV-KRV20");
    builder.makeFolder (gadget / "configs");
    builder.makeFolder (gadget / configuration);
    builder.makeFolder (gadget / "functions");

    // Interfaces are numbered in the order of the links.
    for (std::size_t i = 0; i < description.reportLengths.size(); ++i)
    {
        const auto length = description.reportLengths[i];
        const auto descriptor = reportDescriptor (length);
        const auto function = functionOf (i);

        builder.makeFolder (function, "the kernel offers no HID devices: try modprobe usb_f_hid");
        builder.set (function / "report_length", std::to_string (length));
        builder.set (function / "report_desc",
                     { reinterpret_cast<const char*> (descriptor.data()), descriptor.size() });
        builder.link (function, gadget / configuration / function.filename());
    }

    return builder.problem;
}

std::string UsbGadget::plugIn (std::int32_t bcdDevice)
{
    Builder builder;
    builder.set (gadget / "bcdDevice", attributeValue (static_cast<std::uint16_t> (bcdDevice)));

    if (! builder.problem.empty())
        return builder.problem;

    switch (const auto error = writeAttribute (gadget / "UDC", port + '\n'); error)
    {
        case 0: return {};
        // Linux 6.1 says "busy" of a port that is not there, too.
        case EBUSY: return "the port " + port + " is in use by another gadget of this machine, or gone";
        default: return "cannot plug in at the port " + port + ": " + std::system_category().message (error);
    }
}

void UsbGadget::unplug() const
{
    // An empty line: the kernel does not hear of a write without any byte. There is nothing to do if it is unplugged.
    static_cast<void> (writeAttribute (gadget / "UDC", "\n"));
}

std::string UsbGadget::nodeOf (std::size_t interface) const
{
    // The device number, as 236:0; nodes are named by its second part.
    std::ifstream attribute (functionOf (interface) / "dev");
    std::string number;
    std::getline (attribute, number);

    const auto colon = number.find (':');
    return colon == std::string::npos ? std::string() : "hidg" + number.substr (colon + 1);
}

void UsbGadget::remove() const
{
    std::error_code ignored;

    if (! fs::is_directory (gadget, ignored))
        return;

    // What something else refers to cannot go before that: the port to all, a configuration to the functions.
    unplug();

    for (const auto& config : entriesOf (gadget / "configs"))
    {
        removeEntries (config / "strings");
        removeEntries (config);
    }

    for (const auto* const folder : { "configs", "functions", "strings" })
        removeEntries (gadget / folder);

    fs::remove (gadget, ignored);
}

fs::path UsbGadget::functionOf (std::size_t interface) const
{
    return gadget / "functions" / ("hid.interface" + std::to_string (interface));
}

} // namespace wqv
