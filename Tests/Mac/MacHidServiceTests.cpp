// SPDX-License-Identifier: GPL-3.0-or-later
// The HID service of macOS over a made-up Mac: what every service must do, and what IOKit is asked.

#include "DeviceIds.h"
#include "FakeMac.h"
#include "HidServiceContract.h"
#include "HidUtil.h"
#include "MacHidService.h"
#include "MessageLoop.h"
#include "NotingHandler.h"

#include <array>

namespace wqv
{
namespace
{

FakeMac::Numbers controller (std::int32_t location = 0x1410'0000, std::int32_t version = 0x0105)
{
    return { { "VendorID", kVendorId },  { "ProductID", HidDeviceType[1] }, { "VersionNumber", version },
             { "LocationID", location }, { "MaxInputReportSize", 128 },     { "MaxOutputReportSize", 128 } };
}

class MacWorld
{
public:
    using Report = std::vector<std::uint8_t>;

    static bool isPossible() { return true; }
    static bool knows (HidService::OpenResult) { return true; }
    static bool canHold() { return true; }

    HidService& service() { return hidService; }
    void plugIn() { device = mac.plugIn (controller()); }
    void unplug() { mac.unplug (device); }
    void send (const Report& report) { mac.send (device, report); }
    void takeNoReport() { mac.failures["IOHIDDeviceSetReport"] = { 1, kIOReturnTimeout }; }

    void refuse (HidService::OpenResult result)
    {
        const auto times = result == HidService::OpenResult::ok ? 0 : 100;
        const auto isDenied = result == HidService::OpenResult::denied;
        mac.failures["IOHIDDeviceOpen"] = { times, isDenied ? kIOReturnNotPermitted : kIOReturnExclusiveAccess };
    }

    std::size_t taken() { return static_cast<std::size_t> (std::ranges::count (mac.written, 128u, &Report::size)); }

    template <typename Condition>
    void runUntil (Condition&& isSo)
    {
        loop.runUntil (
            [&]
            {
                mac.turn();
                return isSo();
            });
    }

    void drain()
    {
        mac.turn();
        loop.drain();
    }

private:
    FakeMac mac;
    MessageLoop loop;
    MacHidService hidService;
    int device = 0;
};

struct MacHidServiceTest : testing::Test
{
    FakeMac mac;
    MessageLoop loop;
    NotingHandler handler;
};

TEST_F (MacHidServiceTest, theFirstPlaceIsTakenAndOtherProductsAreLeftAlone)
{
    auto stranger = controller (0x0010'0000, 0x0300);
    stranger["ProductID"] ^= 2;
    mac.plugIn (stranger);
    mac.plugIn (controller (0x1410'0000, 0x0100));
    mac.plugIn (controller (static_cast<std::int32_t> (0x8010'0000), 0x0210)); // below 0
    mac.plugIn ({});

    MacHidService service;
    HidUtil transport (service);
    ASSERT_TRUE (transport.initialize (handler, 1));
    EXPECT_TRUE (transport.deviceMatching());
    EXPECT_EQ (transport.deviceVersion(), 210);
    EXPECT_EQ (mac.opened, 1);
}

TEST_F (MacHidServiceTest, aDeviceIsDescribedByItsPropertiesAndThoseAboveIt)
{
    auto properties = controller (-2, 0x0210);
    properties["bInterfaceNumber"] = 3;
    properties["MaxInputReportSize"] = -1;
    mac.plugIn (properties);

    const auto device = MacHidService().devices().at (0);
    EXPECT_EQ (device.vendorId, kVendorId);
    EXPECT_EQ (device.versionNumber, 0x0210);
    EXPECT_EQ (device.location, 0x7FFF'FFFEu);
    EXPECT_EQ (device.interfaceNumber, 3);
    EXPECT_EQ (device.inputReportLength, 0u);
    EXPECT_EQ (device.outputReportLength, 128u);
}

TEST_F (MacHidServiceTest, noLengthIsBelievedAndNothingIsHeardAfterTheEnd)
{
    const auto device = mac.plugIn (controller());
    MacHidService service;
    std::array<std::uint8_t, 2048> report {};

    {
        HidUtil transport (service);
        ASSERT_TRUE (transport.initialize (handler, 1));
        ASSERT_TRUE (transport.deviceMatching());
        mac.send (device, std::vector<std::uint8_t> (4096, 9));
        mac.turn();
        EXPECT_EQ (transport.deviceInput (report), 1024u);
        mac.send (device, { 1 }, -1);
        mac.turn();
        EXPECT_EQ (transport.deviceInput (report), 0u);
        EXPECT_EQ (handler.news(), "ii");
        mac.send (device, { 1 });
        transport.finalize();
        mac.turn();
    }

    mac.plugIn (controller());
    mac.unplug (device);
    mac.turn();
    EXPECT_EQ (handler.news(), "");
}

TEST_F (MacHidServiceTest, aManagerThatFailsIsSaid)
{
    for (const auto& [function, text] : { std::pair ("IOHIDManagerCreate", "Couldn’t create a IOHIDManager."),
                                          std::pair ("IOHIDManagerOpen", "Couldn’t open IOHIDManager.") })
    {
        mac.plugIn (controller());
        mac.failures[function] = { 1, kIOReturnNotPermitted };
        testing::internal::CaptureStderr();
        MacHidService service;
        const auto said = testing::internal::GetCapturedStderr();
        EXPECT_TRUE (said.ends_with (std::string (": ") + text + "\n")) << said;
        EXPECT_NE (said.find ("HIDBuildMultiDeviceList"), std::string::npos) << said;

        // A keyboard that the user may not read keeps the manager from opening, but no controller from being opened by itself.
        EXPECT_EQ (service.devices().size(), mac.manager.object != nullptr ? 2u : 0u);
    }
}

TEST_F (MacHidServiceTest, theListIsOfTheUsagesThatItIsAskedFor)
{
    const FakeMac::Numbers both { { "PrimaryUsagePage", 0xFF00 }, { "PrimaryUsage", 2 } };
    const FakeMac::Numbers page { { "PrimaryUsagePage", 0xFF00 } };

    const struct
    {
        std::vector<std::uint32_t> pages, usages;
        const char* fails;
        std::vector<FakeMac::Numbers> matching;
        std::vector<std::string> said;
    } cases[] {
        { { 0 }, { 2 }, "nothing", { {} }, {} },
        { { 0xFF00, 0xFF00 }, { 2, 0 }, "nothing", { both, page }, {} },
        { {}, {}, "nothing", {}, {} },
        { { 0xFF00 }, { 2 }, "CFNumberCreate", { {} }, { "CFNumberCreate( usage page ) failed." } },
        { { 0xFF00, 0xFF00 },
          { 2, 0 },
          "CFDictionaryCreateMutable",
          { page },
          { "CFDictionaryCreateMutable failed.", "Couldn’t create a matching dictionary." } },
        { { 0xFF00 }, { 2 }, "CFArrayCreateMutable", {}, { "Couldn’t create a matching array." } },
    };

    HidDeviceList list;

    for (const auto& [pages, usages, fails, matching, messages] : cases)
    {
        SCOPED_TRACE (fails);
        mac.failures[fails] = { 1, 0 };
        testing::internal::CaptureStderr();
        EXPECT_TRUE (list.HIDBuildMultiDeviceList (pages, usages));
        const auto said = testing::internal::GetCapturedStderr();
        EXPECT_EQ (mac.matching, matching);
        EXPECT_EQ (mac.matchesAll, matching.empty());
        EXPECT_EQ (std::ranges::count (said, '\n'), std::ssize (messages)) << said;

        for (const auto& message : messages)
            EXPECT_NE (said.find (": " + message + "\n"), std::string::npos) << said;
    }
}

TEST_F (MacHidServiceTest, theListIsWalkedFromAnyDevice)
{
    HidDeviceList list;
    EXPECT_EQ (list.HIDGetFirstDevice(), nullptr);

    for (const auto location : { 3, 1, 2 })
        mac.plugIn (controller (location));

    ASSERT_TRUE (list.HIDBuildDeviceList (0, 0));
    std::vector<IOHIDDeviceRef> devices;

    for (auto* device = list.HIDGetFirstDevice(); device != nullptr; device = list.HIDGetNextDevice (device))
        devices.push_back (device);

    EXPECT_EQ (devices, (std::vector { mac.devices[1].reference, mac.devices[2].reference, mac.devices[0].reference }));
    EXPECT_EQ (list.HIDGetNextDevice (devices[0]), nullptr); // the walk is over

    EXPECT_EQ (list.HIDGetFirstDevice(), devices[0]);
    EXPECT_EQ (list.HIDGetNextDevice (devices[1]), devices[2]);
    EXPECT_EQ (list.HIDGetNextDevice (nullptr), nullptr);
    mac.plugIn (controller (4)); // which is not in the list
    EXPECT_EQ (list.HIDGetNextDevice (mac.devices[3].reference), nullptr);

    list.HIDReleaseDeviceList();
    EXPECT_EQ (list.HIDGetFirstDevice(), nullptr);
}

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P (Mac, HidServiceContract, MacWorld);

} // namespace wqv
