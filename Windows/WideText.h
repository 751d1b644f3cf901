// SPDX-License-Identifier: GPL-3.0-or-later
// Between UTF-8 and the UTF-16 of Windows.

#pragma once

#include <string>
#include <string_view>

namespace wqv
{

/** What is not valid becomes U+FFFD. */
[[nodiscard]] std::string narrow (std::wstring_view text);
[[nodiscard]] std::wstring widen (std::string_view text);

} // namespace wqv
