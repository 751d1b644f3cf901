// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for Core Foundation: the documented types and functions that Mac/ uses, for tests on another system.

#pragma once

#include <cstdint>

using Boolean = unsigned char;
using CFIndex = long;
using CFTypeID = unsigned long;
using CFStringEncoding = std::uint32_t;

using CFTypeRef = const void*;
using CFAllocatorRef = const struct CfAllocator*;
using CFStringRef = const struct CfString*;
using CFNumberRef = const struct CfNumber*;
using CFArrayRef = const struct CfArray*;
using CFMutableArrayRef = struct CfArray*;
using CFDictionaryRef = const struct CfDictionary*;
using CFMutableDictionaryRef = struct CfDictionary*;
using CFSetRef = const struct CfSet*;
using CFRunLoopRef = struct CfRunLoop*;
using CFRunLoopMode = CFStringRef;

struct CFRange
{
    CFIndex location;
    CFIndex length;
};

enum CFComparisonResult : CFIndex
{
    kCFCompareLessThan = -1,
    kCFCompareEqualTo = 0,
    kCFCompareGreaterThan = 1
};

enum CFNumberType : CFIndex
{
    kCFNumberSInt32Type = 3
};

constexpr CFIndex kCFNotFound = -1;
constexpr CFStringEncoding kCFStringEncodingASCII = 0x0600;
constexpr CFStringEncoding kCFStringEncodingUTF8 = 0x08000100;

/** What a collection does with its elements: each one here retains and releases them. */
struct CFArrayCallBacks
{};

struct CFDictionaryKeyCallBacks
{};

struct CFDictionaryValueCallBacks
{};

using CFComparatorFunction = CFComparisonResult (*) (const void* one, const void* other, void* context);

inline constexpr CFAllocatorRef kCFAllocatorDefault = nullptr;
inline constexpr CFArrayCallBacks kCFTypeArrayCallBacks {};
inline constexpr CFDictionaryKeyCallBacks kCFTypeDictionaryKeyCallBacks {};
inline constexpr CFDictionaryValueCallBacks kCFTypeDictionaryValueCallBacks {};
extern const CFRunLoopMode kCFRunLoopCommonModes;
extern const CFStringRef kCFPreferencesCurrentApplication;

/** A string that is never released. */
CFStringRef makeConstantString (const char* text);
#define CFSTR(text) makeConstantString (text)

CFTypeRef CFRetain (CFTypeRef reference);
void CFRelease (CFTypeRef reference);
CFTypeID CFGetTypeID (CFTypeRef reference);
CFTypeID CFStringGetTypeID();
CFTypeID CFNumberGetTypeID();
CFTypeID CFArrayGetTypeID();

CFStringRef CFStringCreateWithCString (CFAllocatorRef allocator, const char* text, CFStringEncoding encoding);
Boolean CFStringGetCString (CFStringRef string, char* buffer, CFIndex bufferSize, CFStringEncoding encoding);
CFNumberRef CFNumberCreate (CFAllocatorRef allocator, CFNumberType type, const void* value);
Boolean CFNumberGetValue (CFNumberRef number, CFNumberType type, void* value);

inline CFRange CFRangeMake (CFIndex location, CFIndex length)
{
    return { location, length };
}

CFMutableArrayRef CFArrayCreateMutable (CFAllocatorRef allocator, CFIndex capacity, const CFArrayCallBacks* callBacks);
CFIndex CFArrayGetCount (CFArrayRef array);
const void* CFArrayGetValueAtIndex (CFArrayRef array, CFIndex index);
void CFArrayAppendValue (CFMutableArrayRef array, const void* value);
CFIndex CFArrayGetFirstIndexOfValue (CFArrayRef array, CFRange range, const void* value);
void CFArraySortValues (CFMutableArrayRef array, CFRange range, CFComparatorFunction comparator, void* context);

CFMutableDictionaryRef CFDictionaryCreateMutable (CFAllocatorRef allocator,
                                                  CFIndex capacity,
                                                  const CFDictionaryKeyCallBacks* keyCallBacks,
                                                  const CFDictionaryValueCallBacks* valueCallBacks);
void CFDictionarySetValue (CFMutableDictionaryRef dictionary, const void* key, const void* value);

CFIndex CFSetGetCount (CFSetRef set);
void CFSetGetValues (CFSetRef set, const void** values);

CFTypeRef CFPreferencesCopyAppValue (CFStringRef key, CFStringRef application);
CFStringRef CFLocaleCreateCanonicalLocaleIdentifierFromString (CFAllocatorRef allocator, CFStringRef identifier);

CFRunLoopRef CFRunLoopGetCurrent();
