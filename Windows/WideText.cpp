// SPDX-License-Identifier: GPL-3.0-or-later
// Conversions by Windows.

#include "WideText.h"

#include <windows.h>

namespace wqv
{

std::string narrow (std::wstring_view text)
{
    const auto length = static_cast<int> (text.size());
    std::string bytes (
        static_cast<std::size_t> (WideCharToMultiByte (CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte (
        CP_UTF8, 0, text.data(), length, bytes.data(), static_cast<int> (bytes.size()), nullptr, nullptr);
    return bytes;
}

std::wstring widen (std::string_view text)
{
    const auto length = static_cast<int> (text.size());
    std::wstring characters (
        static_cast<std::size_t> (MultiByteToWideChar (CP_UTF8, 0, text.data(), length, nullptr, 0)), L'\0');
    MultiByteToWideChar (CP_UTF8, 0, text.data(), length, characters.data(), static_cast<int> (characters.size()));
    return characters;
}

} // namespace wqv
