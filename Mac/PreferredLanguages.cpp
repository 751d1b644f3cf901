// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the preference AppleLanguages.

#include "PreferredLanguages.h"

#include "CfPointer.h"

#include <array>

namespace wqv
{

std::vector<std::string> preferredLanguages()
{
    std::vector<std::string> languages;
    const CfPointer<CFTypeRef> value (
        CFPreferencesCopyAppValue (CFSTR ("AppleLanguages"), kCFPreferencesCurrentApplication));

    if (value == nullptr || CFGetTypeID (value.get()) != CFArrayGetTypeID())
        return languages;

    auto* const list = static_cast<CFArrayRef> (value.get());

    // With a zero behind what is copied into it, whatever a copy that fails leaves there.
    std::array<char, 16 + 1> identifier {};

    for (CFIndex i = 0; i < CFArrayGetCount (list); ++i)
    {
        const auto* const element = CFArrayGetValueAtIndex (list, i);

        if (element == nullptr || CFGetTypeID (element) != CFStringGetTypeID())
            continue;

        const CfPointer<CFStringRef> canonical (CFLocaleCreateCanonicalLocaleIdentifierFromString (
            kCFAllocatorDefault, static_cast<CFStringRef> (element)));

        if (canonical == nullptr)
            continue;

        CFStringGetCString (
            canonical.get(), identifier.data(), static_cast<CFIndex> (identifier.size() - 1), kCFStringEncodingASCII);
        languages.emplace_back (identifier.data());
    }

    return languages;
}

} // namespace wqv
