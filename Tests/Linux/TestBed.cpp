// SPDX-License-Identifier: GPL-3.0-or-later
// The made-up system: sysfs entries, ancestors first, and udev's events.

#include "TestBed.h"

#include <array>
#include <cstdio>
#include <dlfcn.h>
#include <string_view>
#include <unistd.h>

namespace wqv
{
namespace
{

constexpr const char* emulation = "libumockdev-preload.so.0";

std::string hexadecimal (std::int32_t number)
{
    std::array<char, 16> text {};
    std::snprintf (text.data(), text.size(), "%04x", static_cast<unsigned> (number));
    return text.data();
}

std::string taken (char* path)
{
    const std::unique_ptr<char, decltype (&g_free)> owner (path, g_free);
    return path;
}

} // namespace

std::vector<std::uint8_t> controllersReportDescriptor()
{
    return {
        0x06, 0x00, 0xFF, // usage page: vendor defined
        0x09, 0x01,       // usage
        0xA1, 0x01,       // collection: application
        0x15, 0x00,       //   logical minimum 0
        0x26, 0xFF, 0x00, //   logical maximum 255
        0x75, 0x08,       //   report size 8
        0x95, 0x80,       //   report count 128
        0x09, 0x01,       //   usage
        0x81, 0x02,       //   input
        0x09, 0x01,       //   usage
        0x91, 0x02,       //   output
        0xC0              // end of the collection
    };
}

void TestBed::enter (char* const* arguments)
{
    const auto* const loaded = g_getenv ("LD_PRELOAD");

    // Once: an emulation that is not installed is not loaded the second time either.
    if (loaded != nullptr && std::string_view (loaded) == emulation)
        return;

    // The address sanitizer wants to be loaded first, but gets on without.
    const auto* const options = g_getenv ("ASAN_OPTIONS");
    const auto newOptions = std::string (options != nullptr ? options : "") + ":verify_asan_link_order=0";

    g_setenv ("ASAN_OPTIONS", newOptions.c_str(), TRUE);
    g_setenv ("LD_PRELOAD", emulation, TRUE);
    execv ("/proc/self/exe", arguments);
}

bool TestBed::isPossible()
{
    const std::unique_ptr<void, int (*) (void*)> library (dlopen (emulation, RTLD_LAZY | RTLD_NOLOAD), dlclose);
    return library != nullptr;
}

std::string TestBed::environment()
{
    std::string variables;

    for (const auto* const name : { "UMOCKDEV_DIR", "LD_PRELOAD", "ASAN_OPTIONS" })
        if (const auto* const value = g_getenv (name))
            variables += std::string (variables.empty() ? "" : " ") + name + "=" + value;

    return variables;
}

TestBed::TestBed() : testBed (umockdev_testbed_new()) {}

TestBed::~TestBed() = default;

void TestBed::add (const UsbHid& device)
{
    auto& made = paths[device.node];
    const auto number = [] (int value) { return std::to_string (value); };
    const auto name = number (device.bus) + "-" + device.ports;

    // clang-format off
    made.push_back (taken (umockdev_testbed_add_device (
        handle(), "usb", name.c_str(), nullptr,
        "busnum", number (device.bus).c_str(), "devpath", device.ports.c_str(),
        "idVendor", hexadecimal (device.vendorId).c_str(), "idProduct", hexadecimal (device.productId).c_str(),
        "bcdDevice", hexadecimal (device.versionNumber).c_str(), nullptr,
        "DEVTYPE", "usb_device", nullptr)));
    made.push_back (taken (umockdev_testbed_add_device (
        handle(), "usb", (name + ":1." + number (device.interfaceNumber)).c_str(), made.back().c_str(),
        "bInterfaceNumber", hexadecimal (device.interfaceNumber).substr (2).c_str(), nullptr,
        "DEVTYPE", "usb_interface", nullptr)));
    // clang-format on

    addHid (device.node, "0003", made.back().c_str(), device.reportDescriptor);
}

void TestBed::addOther (int node)
{
    addHid (node, "0005", nullptr, controllersReportDescriptor());
}

void TestBed::addHid (int node,
                      const std::string& name,
                      const char* parent,
                      const std::vector<std::uint8_t>& descriptor)
{
    auto& made = paths[node];
    const auto suffix = std::to_string (node);

    made.push_back (taken (umockdev_testbed_add_device (
        handle(), "hid", (name + ":1209:0001." + suffix).c_str(), parent, nullptr, nullptr)));

    auto bytes = descriptor;
    umockdev_testbed_set_attribute_binary (
        handle(), made.back().c_str(), "report_descriptor", bytes.data(), static_cast<int> (bytes.size()));

    // clang-format off
    made.push_back (taken (umockdev_testbed_add_device (
        handle(), "hidraw", ("hidraw" + suffix).c_str(), made.back().c_str(),
        "dev", ("240:" + suffix).c_str(), nullptr,
        "DEVNAME", pathOf (node).c_str(), nullptr)));
    // clang-format on
}

void TestBed::remove (int node)
{
    // As in the kernel, a list of devices has it no more when its removal is told.
    std::filesystem::remove (folder() / "sys/class/hidraw" / std::filesystem::path (pathOf (node)).filename());

    for (auto& made = paths[node]; ! made.empty(); made.pop_back())
    {
        umockdev_testbed_uevent (handle(), made.back().c_str(), "remove");
        umockdev_testbed_remove_device (handle(), made.back().c_str());
    }
}

void TestBed::tell (int node, const char* action)
{
    umockdev_testbed_uevent (handle(), paths[node].back().c_str(), action);
}

std::filesystem::path TestBed::folder() const
{
    return taken (umockdev_testbed_get_root_dir (testBed.get()));
}

} // namespace wqv
