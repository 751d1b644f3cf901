// SPDX-License-Identifier: GPL-3.0-or-later
// What the stand-in for Core Foundation does.

#include "CfObjects.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <map>
#include <memory>

using wqv::FakeMac;

namespace
{

/** The constant strings, for which nobody counts. */
std::set<CfObject*>& constants()
{
    static std::set<CfObject*> objects;
    return objects;
}

/** An object that is there, or null and a failure of the test. */
CfObject* objectOf (CFTypeRef reference)
{
    auto* const object = static_cast<CfObject*> (const_cast<void*> (reference));
    const auto isThere = object != nullptr && (liveObjects.contains (object) || constants().contains (object));
    EXPECT_TRUE (isThere) << "an object that is gone is used, or none";
    return isThere ? object : nullptr;
}

} // namespace

const CFRunLoopMode kCFRunLoopCommonModes = CFSTR ("kCFRunLoopCommonModes");
const CFStringRef kCFPreferencesCurrentApplication = CFSTR ("kCFPreferencesCurrentApplication");

CFStringRef makeConstantString (const char* text)
{
    static std::map<std::string, std::unique_ptr<CfString>> strings;
    auto& string = strings[text];

    if (string == nullptr)
    {
        string = std::make_unique<CfString> (text);
        string->owners = CfObject::forEver;
        constants().insert (string.get());
    }

    return string.get();
}

CFTypeRef CFRetain (CFTypeRef reference)
{
    const std::scoped_lock guard (objectLock);

    if (auto* const object = objectOf (reference); object != nullptr && object->owners != CfObject::forEver)
        ++object->owners;

    return reference;
}

void CFRelease (CFTypeRef reference)
{
    const std::scoped_lock guard (objectLock);
    auto* const object = objectOf (reference);

    if (object != nullptr && object->owners != CfObject::forEver && --object->owners == 0)
    {
        liveObjects.erase (object);
        delete object;
    }
}

CFTypeID CFGetTypeID (CFTypeRef reference)
{
    const auto* const object = objectOf (reference);
    return object != nullptr ? object->type : 0;
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
    return make<CfString> ("CFStringCreateWithCString", text);
}

/** A copy that fails leaves the buffer alone. */
Boolean CFStringGetCString (CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding)
{
    const auto size = string->text.size() + 1;

    if (size > static_cast<std::size_t> (bufferSize))
        return 0;

    std::memcpy (buffer, string->text.c_str(), size);
    return 1;
}

CFNumberRef CFNumberCreate (CFAllocatorRef, CFNumberType, const void* value)
{
    return make<CfNumber> ("CFNumberCreate", *static_cast<const std::int32_t*> (value));
}

Boolean CFNumberGetValue (CFNumberRef number, CFNumberType, void* value)
{
    *static_cast<std::int32_t*> (value) = number->value;
    return 1;
}

CFMutableArrayRef CFArrayCreateMutable (CFAllocatorRef, CFIndex, const CFArrayCallBacks*)
{
    return make<CfArray> ("CFArrayCreateMutable");
}

CFIndex CFArrayGetCount (CFArrayRef array)
{
    return static_cast<CFIndex> (array->values.size());
}

const void* CFArrayGetValueAtIndex (CFArrayRef array, CFIndex index)
{
    return array->values.at (static_cast<std::size_t> (index));
}

void CFArrayAppendValue (CFMutableArrayRef array, const void* value)
{
    array->add (value);
}

CFIndex CFArrayGetFirstIndexOfValue (CFArrayRef array, CFRange, const void* value)
{
    const auto found = std::ranges::find (array->values, value);
    return found != array->values.end() ? found - array->values.begin() : kCFNotFound;
}

void CFArraySortValues (CFMutableArrayRef array, CFRange, CFComparatorFunction comparator, void* context)
{
    std::ranges::sort (array->values,
                       [comparator, context] (const void* one, const void* other)
                       { return comparator (one, other, context) == kCFCompareLessThan; });
}

CFMutableDictionaryRef CFDictionaryCreateMutable (CFAllocatorRef,
                                                  CFIndex,
                                                  const CFDictionaryKeyCallBacks*,
                                                  const CFDictionaryValueCallBacks*)
{
    return make<CfDictionary> ("CFDictionaryCreateMutable");
}

void CFDictionarySetValue (CFMutableDictionaryRef dictionary, const void* key, const void* value)
{
    dictionary->add (key);
    dictionary->add (value);
}

CFIndex CFSetGetCount (CFSetRef set)
{
    return static_cast<CFIndex> (set->values.size());
}

void CFSetGetValues (CFSetRef set, const void** values)
{
    std::ranges::copy (set->values, values);
}

CFTypeRef CFPreferencesCopyAppValue (CFStringRef key, CFStringRef application)
{
    EXPECT_EQ (key->text, "AppleLanguages");
    EXPECT_EQ (application, kCFPreferencesCurrentApplication);

    if (FakeMac::get().languagesAreAText)
        return make<CfString> ("", "de-DE");

    if (! FakeMac::get().languages)
        return nullptr;

    auto* const list = make<CfArray> ("");

    for (const auto& language : *FakeMac::get().languages)
    {
        const auto* const element =
            language ? static_cast<CFTypeRef> (make<CfString> ("", *language)) : make<CfNumber> ("", 7);
        list->add (element);
        CFRelease (element);
    }

    return list;
}

/** A region comes after an underscore; a text with a space is no identifier. */
CFStringRef CFLocaleCreateCanonicalLocaleIdentifierFromString (CFAllocatorRef, CFStringRef identifier)
{
    auto text = identifier->text;

    if (text.find (' ') != std::string::npos)
        return nullptr;

    if (const auto dash = text.rfind ('-'); dash != std::string::npos && dash + 3 == text.size())
        text[dash] = '_';

    return make<CfString> ("", text);
}

CFRunLoopRef CFRunLoopGetCurrent()
{
    return FakeMac::get().currentRunLoop();
}
