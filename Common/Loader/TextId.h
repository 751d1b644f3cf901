// SPDX-License-Identifier: GPL-3.0-or-later
// The ids of the program's texts.

#pragma once

#include <cstddef>
#include <cstdint>

namespace wqv
{

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

/** The number of texts in each language. */
inline constexpr auto textCount = static_cast<std::size_t> (TextId::connect) + 1;

} // namespace wqv
