// SPDX-License-Identifier: GPL-3.0-or-later
// A made-up Linux system: the HID devices that sysfs and udev tell of.

#pragma once

#include "DeviceIds.h"

#include <umockdev.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace wqv
{

/** Gives a GObject back. */
struct ObjectRelease
{
    void operator() (void* object) const { g_object_unref (object); }
};

/** A USB device with one HID interface. */
struct UsbHid
{
    int node = 0; ///< the number of its hidraw node
    int bus = 1;
    std::string ports = "1"; ///< on the way to it, as in 1.4
    int interfaceNumber = 0;
    std::int32_t vendorId = kVendorId;
    std::int32_t productId = HidDeviceType[1];
    std::int32_t versionNumber = 0x0100; ///< binary-coded decimal
    std::vector<std::uint8_t> reportDescriptor {};
};

/** A report descriptor of 128 bytes each way, without report ids, as the controller has it. */
[[nodiscard]] std::vector<std::uint8_t> controllersReportDescriptor();

/** What this process, and those that it starts, then take for the system. One at a time; any thread, one at a time. */
class TestBed
{
public:
    /** A process can be in a test bed only if the emulation was loaded as it started. If it was not, this starts the
        program anew, with it. */
    static void enter (char* const* arguments);

    /** Whether the emulation is loaded. */
    [[nodiscard]] static bool isPossible();

    /** The variables that put another process into the same test bed, as NAME=VALUE with spaces between them. */
    [[nodiscard]] static std::string environment();

    TestBed();
    ~TestBed();

    TestBed (const TestBed&) = delete;
    TestBed& operator= (const TestBed&) = delete;

    /** Adds a device, and tells udev's listeners: the device itself, its interface, HID device and node, as the kernel
        does. */
    void add (const UsbHid& device);

    /** Adds a HID device that is not on USB. */
    void addOther (int node);

    /** Takes a device away, the node first, and tells udev's listeners. */
    void remove (int node);

    /** Tells udev's listeners of something about a node, such as "change". */
    void tell (int node, const char* action);

    /** The path of a hidraw node in the made-up system. */
    [[nodiscard]] static std::string pathOf (int node) { return "/dev/hidraw" + std::to_string (node); }

    /** The folder that holds the made-up system. */
    [[nodiscard]] std::filesystem::path folder() const;

    [[nodiscard]] UMockdevTestbed* handle() const { return testBed.get(); }

private:
    void addHid (int node, const std::string& name, const char* parent, const std::vector<std::uint8_t>& descriptor);

    std::unique_ptr<UMockdevTestbed, ObjectRelease> testBed;
    std::map<int, std::vector<std::string>> paths; ///< of each node in sysfs, its ancestors first
};

} // namespace wqv
