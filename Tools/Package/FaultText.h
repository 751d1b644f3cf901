// SPDX-License-Identifier: GPL-3.0-or-later
// What is wrong with a package, in words.

#pragma once

#include "UpdatePackage.h"

#include <string>
#include <string_view>

namespace wqv
{

/** A fault as half a sentence without a full stop: "the product code is not WQVKRV20". */
[[nodiscard]] std::string_view describe (PackageFault fault);

/** A fault with the block's number and the byte offset, as far as it has them. */
[[nodiscard]] std::string describe (const PackageVerdict& verdict);

/** Why the program does not offer a package: its fault, that it holds no data, or its version; empty when it does. */
[[nodiscard]] std::string reasonNotOffered (const PackageVerdict& verdict, const upd_info_t& info);

/** A version as people read it: 105 is "1.05". */
[[nodiscard]] std::string versionText (std::int32_t version);

} // namespace wqv
