// SPDX-License-Identifier: GPL-3.0-or-later
// What the stand-in for Core Foundation does.

#include "FakeMac.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

using wqv::FakeMac;

namespace
{

/** An object for the program, unless the test wants the function to fail. */
template <typename Reference>
Reference create (const char* function, CfObject object)
{
    return FakeMac::get().failureOf (function) ? nullptr : make<Reference> (std::move (object));
}

} // namespace

CfObject& objectAt (CFTypeRef reference)
{
    auto& object = *static_cast<CfObject*> (const_cast<void*> (reference));
    EXPECT_NE (object.owners, 0) << "an object that is gone is used";
    return object;
}

// Nobody looks at these two but by their addresses.
const CFRunLoopMode kCFRunLoopCommonModes = reinterpret_cast<CFStringRef> ("common modes");
const CFStringRef kCFPreferencesCurrentApplication = reinterpret_cast<CFStringRef> ("this one");

CFStringRef makeConstantString (const char* text)
{
    return make<CFStringRef> ({ .type = stringType, .text = text, .owners = CfObject::forEver });
}

CFTypeRef CFRetain (CFTypeRef reference)
{
    auto& owners = objectAt (reference).owners;
    owners += owners != CfObject::forEver ? 1 : 0;
    return reference;
}

void CFRelease (CFTypeRef reference)
{
    auto& object = objectAt (reference);

    if (object.owners == CfObject::forEver)
        return;

    --object.owners;

    if (object.owners > 0)
        return;

    std::ranges::for_each (object.elements, CFRelease);

    for (const auto& [key, value] : object.values)
        CFRelease (value);
}

CFTypeID CFGetTypeID (CFTypeRef reference)
{
    return objectAt (reference).type;
}

CFTypeID CFStringGetTypeID()
{
    return stringType;
}

CFTypeID CFNumberGetTypeID()
{
    return numberType;
}

CFTypeID CFArrayGetTypeID()
{
    return arrayType;
}

CFStringRef CFStringCreateWithCString (CFAllocatorRef, const char* text, CFStringEncoding)
{
    return create<CFStringRef> (__func__, { .type = stringType, .text = text });
}

/** A copy that fails leaves the buffer alone. */
Boolean CFStringGetCString (CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding)
{
    const auto& text = objectAt (string).text;
    const auto fits = text.size() < static_cast<std::size_t> (bufferSize);

    if (fits)
        std::memcpy (buffer, text.c_str(), text.size() + 1);

    return fits ? 1 : 0;
}

CFNumberRef CFNumberCreate (CFAllocatorRef, CFNumberType, const void* value)
{
    return create<CFNumberRef> (__func__, { .type = numberType, .number = *static_cast<const std::int32_t*> (value) });
}

Boolean CFNumberGetValue (CFNumberRef number, CFNumberType, void* value)
{
    *static_cast<std::int32_t*> (value) = objectAt (number).number;
    return 1;
}

CFMutableArrayRef CFArrayCreateMutable (CFAllocatorRef, CFIndex, const CFArrayCallBacks*)
{
    return create<CFMutableArrayRef> (__func__, { .type = arrayType });
}

CFIndex CFArrayGetCount (CFArrayRef array)
{
    return std::ssize (objectAt (array).elements);
}

const void* CFArrayGetValueAtIndex (CFArrayRef array, CFIndex index)
{
    return objectAt (array).elements.at (static_cast<std::size_t> (index));
}

void CFArrayAppendValue (CFMutableArrayRef array, const void* value)
{
    objectAt (array).elements.push_back (CFRetain (value));
}

CFIndex CFArrayGetFirstIndexOfValue (CFArrayRef array, CFRange, const void* value)
{
    const auto& elements = objectAt (array).elements;
    const auto found = std::ranges::find (elements, value);
    return found != elements.end() ? found - elements.begin() : kCFNotFound;
}

void CFArraySortValues (CFMutableArrayRef array, CFRange, CFComparatorFunction comparator, void* context)
{
    std::ranges::sort (objectAt (array).elements,
                       [comparator, context] (const void* one, const void* other)
                       { return comparator (one, other, context) == kCFCompareLessThan; });
}

CFMutableDictionaryRef CFDictionaryCreateMutable (CFAllocatorRef,
                                                  CFIndex,
                                                  const CFDictionaryKeyCallBacks*,
                                                  const CFDictionaryValueCallBacks*)
{
    return create<CFMutableDictionaryRef> (__func__, {});
}

void CFDictionarySetValue (CFMutableDictionaryRef dictionary, const void* key, const void* value)
{
    objectAt (dictionary).values[objectAt (key).text] = CFRetain (value);
}

CFIndex CFSetGetCount (CFSetRef set)
{
    return std::ssize (objectAt (set).elements);
}

void CFSetGetValues (CFSetRef set, const void** values)
{
    std::ranges::copy (objectAt (set).elements, values);
}

CFTypeRef CFPreferencesCopyAppValue (CFStringRef key, CFStringRef application)
{
    EXPECT_EQ (objectAt (key).text, "AppleLanguages");
    EXPECT_EQ (application, kCFPreferencesCurrentApplication);

    if (! FakeMac::get().languages)
        return nullptr;

    CfObject list { .type = FakeMac::get().languagesAreAText ? stringType : arrayType };

    for (const auto& language : *FakeMac::get().languages)
        list.elements.push_back (
            make<CFTypeRef> ({ .type = language ? stringType : numberType, .text = language.value_or ("") }));

    return make<CFTypeRef> (std::move (list));
}

/** A region comes after an underscore; a text with a space is no identifier. */
CFStringRef CFLocaleCreateCanonicalLocaleIdentifierFromString (CFAllocatorRef, CFStringRef identifier)
{
    auto text = objectAt (identifier).text;

    if (text.find (' ') != std::string::npos)
        return nullptr;

    if (const auto dash = text.rfind ('-'); dash != std::string::npos && dash + 3 == text.size())
        text[dash] = '_';

    return make<CFStringRef> ({ .type = stringType, .text = text });
}

CFRunLoopRef CFRunLoopGetCurrent()
{
    return FakeMac::get().runLoop;
}
