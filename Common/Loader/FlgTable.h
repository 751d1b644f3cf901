// SPDX-License-Identifier: GPL-3.0-or-later
// The sections of a text resource, and the ids of the texts.

#pragma once

#include <cstddef>
#include <cstdint>

namespace wqv
{

/** A section of a text resource, opened by the marker that the comment names. */
enum FlgTable : std::int32_t
{
    FLG_NONE = 0,      ///< before the first marker, and after an unknown one
    FLG_FONT_WIN = 1,  ///< ":FONT_WIN"
    FLG_FONT_MAC = 2,  ///< ":FONT_MAC"
    FLG_LANG = 3,      ///< ":LANG"
    FLG_STR = 4,       ///< ":STR"
    FLG_FONT_LINUX = 5 ///< ":FONT_LINUX"
};

/** The number of texts in each language. */
inline constexpr std::size_t textCount = 24;

/** What a text says; its number in every language. */
enum class TextId : std::uint32_t
{
    empty,
    product,
    model, ///< takes the place of every "%s"
    windowTitle,
    ok,
    start,
    cancel,
    close,
    languageSelections,
    selectLanguage,
    packageError,
    notConnected,
    updatesFirmware,
    currentVersion,
    updateVersion,
    updating,
    pleaseWait,
    complete,
    errorOccurred,
    notPossible,
    notRecognized,
    connectThen,
    thenRestart,
    connect
};

static_assert (static_cast<std::size_t> (TextId::connect) + 1 == textCount);

/** Languages that the layout knows by name, by index. */
namespace languageIndex
{

inline constexpr unsigned russian = 6;
inline constexpr unsigned simplifiedChinese = 8;
inline constexpr unsigned traditionalChinese = 9;
inline constexpr unsigned korean = 10;
inline constexpr unsigned japanese = 11;

} // namespace languageIndex

} // namespace wqv
