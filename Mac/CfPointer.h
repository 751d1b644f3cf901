// SPDX-License-Identifier: GPL-3.0-or-later
// The owner of a Core Foundation or IOKit object.

#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <type_traits>

namespace wqv
{

/** Gives an object back. */
struct CfRelease
{
    void operator() (CFTypeRef object) const { CFRelease (object); }
};

/** Owns what a function with "Create" or "Copy" in its name returns, as in CfPointer<CFStringRef>. Null is none. */
template <typename Reference>
using CfPointer = std::unique_ptr<std::remove_pointer_t<Reference>, CfRelease>;

/** A share in an object that somebody else owns. */
template <typename Reference>
[[nodiscard]] CfPointer<Reference> shared (Reference object)
{
    CFRetain (object);
    return CfPointer<Reference> (object);
}

} // namespace wqv
