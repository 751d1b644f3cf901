// SPDX-License-Identifier: GPL-3.0-or-later
// Every text that the program shows, in the current language, and the font of each language.

#pragma once

#include "Languages.h"
#include "TextId.h"
#include "TextResource.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <array>
#include <cstdint>
#include <span>
#include <string>

namespace wqv
{

/** The texts by id, the languages by index. One object, made and released by the panel; message thread only. */
class TxtLoader final
{
public:
    /** Makes the instance, if there is none, in the language that the user prefers.
        @param preferred    language identifiers such as "de-DE" or "zh-Hans-CN", most preferred first
        @param fontSection  the section of language.txt that names the system's fonts; a language that it leaves out, or
                            whose font the system does not have, and every language with FLG_NONE, has its embedded family
                            of typefaces */
    static void createInstance (std::span<const std::string> preferred = {}, FlgTable fontSection = FLG_NONE);

    /** The instance; made if there is none. */
    static TxtLoader* getInstance();

    /** Deletes the instance, if there is one. */
    static void releaseInstance();

    TxtLoader (const TxtLoader&) = delete;
    TxtLoader& operator= (const TxtLoader&) = delete;
    virtual ~TxtLoader() = default;

    /** A text of the current language; empty for an id that does not exist. */
    [[nodiscard]] const juce::String& getString (std::uint32_t id) const;
    [[nodiscard]] const juce::String& getString (TextId id) const
    {
        return getString (static_cast<std::uint32_t> (id));
    }

    /** The family of typefaces of the current language: the system's, or an embedded one. */
    [[nodiscard]] const juce::String& getFont() const { return getFont (m_locale); }

    /** The same of a language; empty for an index that does not exist. */
    [[nodiscard]] const juce::String& getFont (std::uint32_t language) const;

    /** A language's name for itself; empty for an index that does not exist. */
    [[nodiscard]] const juce::String& getLang (std::uint32_t language) const;

    /** Whether a language is offered: all are. Kept for those who build on this class. */
    [[nodiscard]] bool isEnabled (std::uint32_t language) const;

    /** The index of the current language. */
    [[nodiscard]] std::uint32_t locale() const { return m_locale; }

    /** Makes a language current and loads its texts. Texts that it lacks stay those of the language before.
        @param language  below languageCount */
    void setLocale (std::uint32_t language);

    /** Reads one section of a resource into the elements of @p out, in order, as far as both go. */
    static void Load (std::span<const std::uint8_t> resource, FlgTable section, std::span<juce::String> out);

    /** The same for the texts of one language. */
    static void Load (std::uint32_t language, FlgTable section, std::span<juce::String> out);

private:
    explicit TxtLoader (FlgTable fontSection);

    std::uint32_t chkLocale (std::span<const std::string> preferred);

    static inline TxtLoader* m_pinstance = nullptr;

    std::uint32_t m_locale = 0xFFFFFFFF;
    const juce::String m_empty;
    std::array<bool, languageCount> m_langEnable {};
    std::array<juce::String, languageCount> m_font;
    std::array<juce::String, languageCount> m_lang;
    std::array<juce::String, textCount> m_string;
};

} // namespace wqv
