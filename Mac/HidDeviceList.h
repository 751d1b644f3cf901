// SPDX-License-Identifier: GPL-3.0-or-later
// The list of HID devices: the IOKit manager, and its devices in the order of their places.

#pragma once

#include "CfPointer.h"

#include <IOKit/hid/IOHIDLib.h>

#include <cstdint>
#include <span>

namespace wqv
{

/** One manager for the life of this object, and the last list that was taken of its devices. What fails is said on standard
    error. Message thread only. */
class HidDeviceList
{
public:
    HidDeviceList() = default;
    ~HidDeviceList();

    HidDeviceList (const HidDeviceList&) = delete;
    HidDeviceList& operator= (const HidDeviceList&) = delete;

    /** HIDBuildMultiDeviceList with one pair. */
    bool HIDBuildDeviceList (std::uint32_t usagePage, std::uint32_t usage);

    /** Makes and opens the manager, if there is none, sets which devices it has, and takes the list.
        @param usagePages, usages  pairs, as many as the shorter one has; no pair, or a page of 0, is every device, and a usage of
                                   0 every one of its page
        @returns false, with no new list, if there is no manager or it was not opened */
    bool HIDBuildMultiDeviceList (std::span<const std::uint32_t> usagePages, std::span<const std::uint32_t> usages);

    /** Takes a new list, sorted by place; the old one stays if the manager gives none. */
    void HIDRebuildDevices();

    void HIDReleaseDeviceList();

    /** The device at the start of the list; null if there is none. */
    [[nodiscard]] IOHIDDeviceRef HIDGetFirstDevice();

    /** The device behind another one; null at the end, and if that one is not in the list. */
    [[nodiscard]] IOHIDDeviceRef HIDGetNextDevice (IOHIDDeviceRef device);

    /** Null until a list was built, and if that failed. */
    [[nodiscard]] IOHIDManagerRef manager() const { return gIOHIDManagerRef.get(); }

private:
    [[nodiscard]] IOHIDDeviceRef deviceAtIndex() const;

    CfPointer<IOHIDManagerRef> gIOHIDManagerRef;
    CfPointer<CFMutableArrayRef> gDeviceCFArrayRef;
    CFIndex gDeviceIndex = 0;
};

} // namespace wqv
