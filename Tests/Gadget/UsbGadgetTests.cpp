// SPDX-License-Identifier: GPL-3.0-or-later
// A gadget's folders, attributes and links in a plain folder, and the choice of a port.

#include "UsbGadget.h"

#include "ReportDescriptor.h"
#include "TemporaryFolder.h"
#include "UsbPort.h"

#include <gtest/gtest.h>

#include <tuple>
#include <vector>

namespace wqv
{
namespace
{

namespace fs = std::filesystem;

class Gadget : public testing::Test
{
protected:
    Gadget() { fs::create_directory (folder.path ("usb_gadget")); }

    UsbGadget gadgetWith (std::vector<std::uint8_t> reportLengths) const
    {
        return { folder.path ("usb_gadget"),
                 "port.0",
                 { .vendorId = 0x1209, .productId = 0xABCD, .reportLengths = std::move (reportLengths) } };
    }

    std::string text (const std::string& attribute) const
    {
        const auto bytes = folder.read (root + attribute);
        return { bytes.begin(), bytes.end() };
    }

    /** In configfs attributes go with their folder; here nothing would go before them. */
    void removeAttributes() const
    {
        std::vector<fs::path> attributes;

        for (const auto& entry : fs::recursive_directory_iterator (folder.path (root)))
            if (entry.is_regular_file() && ! entry.is_symlink())
                attributes.push_back (entry);

        for (const auto& attribute : attributes)
            fs::remove (attribute);
    }

    TemporaryFolder folder;
    const std::string root = "usb_gadget/wqv-krv20.port.0/";
};

TEST_F (Gadget, isWrittenAndRemoved)
{
    auto gadget = gadgetWith ({ 8, 128 });
    ASSERT_EQ (gadget.create(), "");
    ASSERT_EQ (gadget.plugIn (0x0105), "");

    EXPECT_EQ (text ("idVendor"), "0x1209");
    EXPECT_EQ (text ("idProduct"), "0xabcd");
    EXPECT_EQ (text ("bcdDevice"), "0x105");
    EXPECT_EQ (text ("UDC"), "port.0\n");

    for (const auto& [interface, length] : { std::pair ("0", 8U), std::pair ("1", 128U) })
    {
        const auto name = "hid.interface" + std::string (interface);
        const auto lengths = reportLengthsOf (folder.read (root + "functions/" + name + "/report_desc"));

        EXPECT_EQ (lengths.input, length);
        EXPECT_EQ (lengths.output, length);
        EXPECT_EQ (text ("functions/" + name + "/report_length"), std::to_string (length));
        EXPECT_EQ (fs::read_symlink (folder.path (root + "configs/c.1/" + name)),
                   folder.path (root + "functions/" + name));
    }

    folder.write (root + "functions/hid.interface1/dev", std::vector<std::uint8_t> { '2', '3', ':', '7', '\n' });
    EXPECT_EQ (gadget.nodeOf (1), "hidg7");
    EXPECT_EQ (gadget.nodeOf (0), "");

    gadget.unplug();
    EXPECT_EQ (text ("UDC"), "\n");

    removeAttributes();
    gadget.remove();

    // Folders that configfs makes and removes itself are all that is left.
    for (const auto* const left : { "configs", "functions", "strings" })
        EXPECT_TRUE (fs::is_empty (folder.path (root + left))) << left;
}

TEST_F (Gadget, removesWhatAnEarlierProcessLeft)
{
    auto killed = gadgetWith ({ 128, 8 });
    ASSERT_EQ (killed.create(), "");
    removeAttributes();

    auto gadget = gadgetWith ({ 128 });
    ASSERT_EQ (gadget.create(), "");
    EXPECT_FALSE (fs::exists (folder.path (root + "functions/hid.interface1")));
    EXPECT_FALSE (fs::is_symlink (folder.path (root + "configs/c.1/hid.interface1")));
    EXPECT_EQ (text ("functions/hid.interface0/report_length"), "128");
}

TEST_F (Gadget, saysWhatToDoWhereItCannotBe)
{
    fs::remove (folder.path ("usb_gadget"));
    EXPECT_NE (gadgetWith ({ 128 }).create().find ("modprobe libcomposite"), std::string::npos);

    const std::tuple<std::vector<std::string>, std::string, std::string, std::string> cases[] {
        { {}, "", "", "modprobe dummy_hcd" },
        { { "a.0" }, "", "a.0", "" },
        { { "a.0", "b.0" }, "", "", "one of a.0, b.0 with --udc" },
        { { "a.0", "b.0" }, "b.0", "b.0", "" },
        { { "a.0" }, "b.0", "", "no USB device port b.0" },
    };

    for (const auto& [ports, wanted, chosen, advice] : cases)
    {
        const TemporaryFolder system;
        UsbPort port;
        UsbPort another;

        for (const auto& name : ports)
            fs::create_directory (system.path (name));

        const auto problem = port.open (system.path(), wanted);
        EXPECT_NE (problem.find (advice), std::string::npos) << problem;
        EXPECT_EQ (problem.empty(), advice.empty()) << problem;
        EXPECT_EQ (port.name(), chosen);

        if (! problem.empty())
            continue;

        const auto refusal = another.open (system.path(), wanted);
        EXPECT_NE (refusal.find ("another wqv-controller"), std::string::npos) << refusal;
    }
}

} // namespace
} // namespace wqv
