// SPDX-License-Identifier: GPL-3.0-or-later
// Loads the texts of a language, and chooses the language to start with.

#include "TxtLoader.h"

#include "SystemFonts.h"

#include <algorithm>
#include <string_view>

namespace wqv
{
namespace
{

template <typename Strings>
const juce::String& elementOr (const Strings& strings, std::uint32_t index, const juce::String& otherwise)
{
    return index < strings.size() ? strings[index] : otherwise;
}

} // namespace

void TxtLoader::createInstance (std::span<const std::string> preferred, FlgTable fontSection)
{
    if (m_pinstance != nullptr)
        return;

    m_pinstance = new TxtLoader (fontSection);
    m_pinstance->setLocale (m_pinstance->chkLocale (preferred));
}

TxtLoader* TxtLoader::getInstance()
{
    createInstance();
    return m_pinstance;
}

void TxtLoader::releaseInstance()
{
    delete m_pinstance;
    m_pinstance = nullptr;
}

TxtLoader::TxtLoader (FlgTable fontSection)
{
    Load (language_txt, fontSection, m_font);

    for (std::uint32_t language = 0; language < languageCount; ++language)
        m_font[language] = familyInReach (m_font[language], langList[language].family);

    Load (language_txt, FLG_LANG, m_lang);
}

const juce::String& TxtLoader::getString (std::uint32_t id) const
{
    return elementOr (m_string, id, m_empty);
}

const juce::String& TxtLoader::getFont (std::uint32_t language) const
{
    return elementOr (m_font, language, m_empty);
}

const juce::String& TxtLoader::getLang (std::uint32_t language) const
{
    return elementOr (m_lang, language, m_empty);
}

bool TxtLoader::isEnabled (std::uint32_t language) const
{
    return language < m_langEnable.size() && m_langEnable[language];
}

void TxtLoader::setLocale (std::uint32_t language)
{
    if (language == m_locale)
        return;

    m_locale = language;
    Load (language, FLG_STR, m_string);
}

void TxtLoader::Load (std::span<const std::uint8_t> resource, FlgTable section, std::span<juce::String> out)
{
    TextResource values ({ reinterpret_cast<const char*> (resource.data()), resource.size() }, section);
    std::string value;

    for (auto& text : out)
    {
        if (! values.next (value))
            return;

        text = juce::String::fromUTF8 (value.data(), static_cast<int> (value.size()));
    }
}

void TxtLoader::Load (std::uint32_t language, FlgTable section, std::span<juce::String> out)
{
    if (language < langList.size())
        Load (langList[language].texts, section, out);
}

/** Sets which languages are offered, all of them, and finds the one to start with: the first preferred language that
    begins with a code counts. English, if none does. An identifier of 16 characters or more fits no code. */
std::uint32_t TxtLoader::chkLocale (std::span<const std::string> preferred)
{
    constexpr std::size_t longestIdentifier = 15;

    m_langEnable.fill (true);

    for (const auto& identifier : preferred)
        for (std::uint32_t language = 0; language < langList.size(); ++language)
            if (identifier.size() <= longestIdentifier
                && juce::String (identifier).startsWithIgnoreCase (langList[language].code))
                return language;

    return 0;
}

} // namespace wqv
