// SPDX-License-Identifier: GPL-3.0-or-later
// Making the manager, what it is to match, and the sorted list.

#include "HidDeviceList.h"

#include "IoHidDevice.h"

#include <IOKit/IOReturn.h>

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <vector>

namespace wqv
{
namespace
{

/** @param function  the signature of the one that fails */
void say (const char* function, const char* what)
{
    std::fprintf (stderr, "%s: %s\n", function, what);
}

CfPointer<CFNumberRef> numberOf (std::uint32_t value)
{
    const auto number = static_cast<std::int32_t> (value);
    return CfPointer<CFNumberRef> (CFNumberCreate (kCFAllocatorDefault, kCFNumberSInt32Type, &number));
}

/** @returns null, which it says, if there is no memory; without one of the keys if only that could not be made */
CfPointer<CFMutableDictionaryRef> matchingDictionary (std::uint32_t usagePage, std::uint32_t usage)
{
    CfPointer<CFMutableDictionaryRef> matching (CFDictionaryCreateMutable (
        kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));

    if (matching == nullptr)
    {
        say (__PRETTY_FUNCTION__, "CFDictionaryCreateMutable failed.");
        return nullptr;
    }

    if (usagePage == 0)
        return matching;

    const auto pageNumber = numberOf (usagePage);

    if (pageNumber == nullptr)
    {
        say (__PRETTY_FUNCTION__, "CFNumberCreate( usage page ) failed.");
        return matching;
    }

    CFDictionarySetValue (matching.get(), CFSTR (kIOHIDPrimaryUsagePageKey), pageNumber.get());

    if (usage == 0)
        return matching;

    if (const auto usageNumber = numberOf (usage); usageNumber != nullptr)
        CFDictionarySetValue (matching.get(), CFSTR (kIOHIDPrimaryUsageKey), usageNumber.get());
    else
        say (__PRETTY_FUNCTION__, "CFNumberCreate( usage ) failed.");

    return matching;
}

/** @returns null, which is every device, for no pairs; and if it fails, which it says */
CfPointer<CFMutableArrayRef> matchingArray (std::span<const std::uint32_t> usagePages,
                                            std::span<const std::uint32_t> usages)
{
    const auto count = std::min (usagePages.size(), usages.size());

    if (count == 0)
        return nullptr;

    CfPointer<CFMutableArrayRef> array (CFArrayCreateMutable (kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));

    if (array == nullptr)
    {
        say (__PRETTY_FUNCTION__, "Couldn’t create a matching array.");
        return nullptr;
    }

    for (std::size_t i = 0; i < count; ++i)
    {
        if (const auto matching = matchingDictionary (usagePages[i], usages[i]); matching != nullptr)
            CFArrayAppendValue (array.get(), matching.get());
        else
            say (__PRETTY_FUNCTION__, "Couldn’t create a matching dictionary.");
    }

    return array;
}

IOHIDDeviceRef deviceIn (CFArrayRef array, CFIndex index)
{
    // The array has its elements as constants, the functions of IOKit take them otherwise.
    return static_cast<IOHIDDeviceRef> (const_cast<void*> (CFArrayGetValueAtIndex (array, index)));
}

CFRange all (CFArrayRef array)
{
    return CFRangeMake (0, CFArrayGetCount (array));
}

CFComparisonResult compareLocations (const void* one, const void* other, void* /*context*/)
{
    const auto locationOf = [] (const void* device)
    { return IOHIDDevice_GetLocationID (static_cast<IOHIDDeviceRef> (const_cast<void*> (device))); };

    if (locationOf (one) == locationOf (other))
        return kCFCompareEqualTo;

    return locationOf (one) < locationOf (other) ? kCFCompareLessThan : kCFCompareGreaterThan;
}

} // namespace

HidDeviceList::~HidDeviceList()
{
    if (gIOHIDManagerRef != nullptr)
        IOHIDManagerClose (gIOHIDManagerRef.get(), kIOHIDOptionsTypeNone);
}

bool HidDeviceList::HIDBuildDeviceList (std::uint32_t usagePage, std::uint32_t usage)
{
    return HIDBuildMultiDeviceList (std::span (&usagePage, 1), std::span (&usage, 1));
}

bool HidDeviceList::HIDBuildMultiDeviceList (std::span<const std::uint32_t> usagePages,
                                             std::span<const std::uint32_t> usages)
{
    const auto isFirst = gIOHIDManagerRef == nullptr;

    if (isFirst)
        gIOHIDManagerRef.reset (IOHIDManagerCreate (kCFAllocatorDefault, kIOHIDOptionsTypeNone));

    if (gIOHIDManagerRef == nullptr)
    {
        say (__PRETTY_FUNCTION__, "Couldn’t create a IOHIDManager.");
        return false;
    }

    const auto matching = matchingArray (usagePages, usages);
    IOHIDManagerSetDeviceMatchingMultiple (manager(), matching.get());

    if (isFirst && IOHIDManagerOpen (manager(), kIOHIDOptionsTypeNone) != kIOReturnSuccess)
    {
        say (__PRETTY_FUNCTION__, "Couldn’t open IOHIDManager.");
        return false;
    }

    HIDRebuildDevices();
    return true;
}

void HidDeviceList::HIDRebuildDevices()
{
    const CfPointer<CFSetRef> devices (IOHIDManagerCopyDevices (manager()));

    if (devices == nullptr)
        return;

    gDeviceCFArrayRef.reset (CFArrayCreateMutable (kCFAllocatorDefault, 0, &kCFTypeArrayCallBacks));

    if (gDeviceCFArrayRef == nullptr)
        return;

    std::vector<const void*> elements (static_cast<std::size_t> (CFSetGetCount (devices.get())));
    CFSetGetValues (devices.get(), elements.data());

    for (const auto* const element : elements)
        CFArrayAppendValue (gDeviceCFArrayRef.get(), element);

    CFArraySortValues (gDeviceCFArrayRef.get(), all (gDeviceCFArrayRef.get()), compareLocations, nullptr);
}

void HidDeviceList::HIDReleaseDeviceList()
{
    gDeviceCFArrayRef.reset();
}

IOHIDDeviceRef HidDeviceList::HIDGetFirstDevice()
{
    gDeviceIndex = 0;
    return deviceAtIndex();
}

IOHIDDeviceRef HidDeviceList::HIDGetNextDevice (IOHIDDeviceRef device)
{
    if (device == nullptr || deviceAtIndex() == nullptr)
        return nullptr;

    if (deviceAtIndex() != device)
        gDeviceIndex = CFArrayGetFirstIndexOfValue (gDeviceCFArrayRef.get(), all (gDeviceCFArrayRef.get()), device);

    // Not found: out of the list, from where only HIDGetFirstDevice leads back.
    if (gDeviceIndex == kCFNotFound)
        return nullptr;

    ++gDeviceIndex;
    return deviceAtIndex();
}

/** @returns null if the index is outside the list, or there is none */
IOHIDDeviceRef HidDeviceList::deviceAtIndex() const
{
    auto* const array = gDeviceCFArrayRef.get();
    return array != nullptr && gDeviceIndex >= 0 && gDeviceIndex < CFArrayGetCount (array)
               ? deviceIn (array, gDeviceIndex)
               : nullptr;
}

} // namespace wqv
