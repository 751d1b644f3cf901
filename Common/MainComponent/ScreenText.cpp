// SPDX-License-Identifier: GPL-3.0-or-later
// Which texts each screen has, where they stand and how large they are.

#include "ScreenText.h"

#include "FittedText.h"
#include "JuceVersions.h"
#include "Languages.h"
#include "TxtLoader.h"

#include <cstdarg>
#include <cstdio>
#include <string>

namespace wqv
{
namespace
{

constexpr float normalFontHeight = 13.0f;
constexpr float lineHeight = 16.0f;

/** Where texts begin beside the warning picture. */
constexpr float noticeX = 105.0f;
constexpr float topY = 20.0f;

juce::String versionText (TextId id, std::int32_t version)
{
    return formatted (TxtLoader::getInstance()->getString (id).toRawUTF8(), version / 100, version % 100);
}

} // namespace

juce::String formatted (const char* utf8Format, ...)
{
    std::va_list arguments;

    va_start (arguments, utf8Format);
    const auto length = std::vsnprintf (nullptr, 0, utf8Format, arguments);
    va_end (arguments);

    if (length < 0)
        return {};

    std::string bytes (static_cast<std::size_t> (length), '\0');

    va_start (arguments, utf8Format);
    std::vsnprintf (bytes.data(), bytes.size() + 1, utf8Format, arguments);
    va_end (arguments);

    return juce::String::fromUTF8 (bytes.data(), length);
}

ScreenText::ScreenText (int panelWidth, int panelHeight)
    : width (static_cast<float> (panelWidth)), height (static_cast<float> (panelHeight))
{
}

void ScreenText::layOut (const ScreenState& state)
{
    const auto& texts = *TxtLoader::getInstance();
    glyphs.clear();
    words.clear();

    if (state.status != UPDATER_STATUS_START && ! state.packageValid)
    {
        addNotice (texts.getString (TextId::packageError));
        return;
    }

    switch (state.status)
    {
        case UPDATER_STATUS_START:
            addTitle (texts.getString (TextId::languageSelections) + "\n", juce::Font::bold);
            addBody (texts.getString (TextId::selectLanguage));
            break;

        case UPDATER_STATUS_NOT_CONNECTED:
            dispHowToUpdate (noticeX, topY, texts.locale(), texts.getFont(), true);
            break;

        case UPDATER_STATUS_READY: addReadyScreen (state); break;

        case UPDATER_STATUS_UPDATING:
            addTitle (textFor (TextId::updating) + "\n", juce::Font::bold);
            addBody (texts.getString (TextId::pleaseWait));
            break;

        case UPDATER_STATUS_COMPLETE: addTitle (textFor (TextId::complete), juce::Font::plain); break;

        case UPDATER_STATUS_ERROR:
            addNotice (texts.getString (TextId::errorOccurred) + "\n");
            dispHowToUpdate (noticeX, topY, texts.locale(), texts.getFont(), false);
            break;
    }
}

void ScreenText::addReadyScreen (const ScreenState& state)
{
    const auto& texts = *TxtLoader::getInstance();
    const auto language = texts.locale();

    addTitle (textFor (TextId::updatesFirmware) + "\n", juce::Font::bold);
    dispHowToStart (40.0f, topY + langList[language].layout.hintGap, language, texts.getFont());

    const auto y = bottom + 5.0f;

    addBlock (versionText (TextId::currentVersion, state.deviceVersion) + "\n"
                  + versionText (TextId::updateVersion, state.packageVersion),
              { 60.0f, y, width - 60.0f, height - y },
              langList[language].layout.smallFontHeight,
              juce::Font::plain);
}

/** How to connect the controller and restart the program, maybe under the line that it is not recognised. */
void ScreenText::dispHowToUpdate (
    float x, float y, unsigned language, const juce::String& fontName, bool showNotRecognized)
{
    const auto& layout = langList[language].layout;
    const auto blockWidth = width - (x + 15.0f);
    const juce::Font font (FontOptions (fontName, layout.smallFontHeight, juce::Font::plain));

    if (showNotRecognized)
        addLines (textFor (TextId::notRecognized),
                  FontOptions (fontName, normalFontHeight, juce::Font::bold),
                  x,
                  y,
                  blockWidth,
                  1);

    y += lineHeight;
    addLines (textFor (TextId::connectThen), font, x, y, blockWidth, layout.instructionLines);

    y += static_cast<float> (layout.instructionLines) * layout.smallFontHeight + 3.0f;
    addLines (TxtLoader::getInstance()->getString (TextId::thenRestart), font, x, y, blockWidth, 1);
}

/** How to connect the controller. */
void ScreenText::dispHowToStart (float x, float y, unsigned language, const juce::String& fontName)
{
    const auto& layout = langList[language].layout;

    addLines (textFor (TextId::connect),
              FontOptions (fontName, layout.smallFontHeight, juce::Font::plain),
              x,
              y,
              width - (x + 20.0f),
              layout.instructionLines);
}

void ScreenText::addTitle (const juce::String& text, int style)
{
    addBlock (text, { 20.0f, topY, width - 40.0f, height - topY }, normalFontHeight, style);
}

void ScreenText::addBody (const juce::String& text)
{
    const auto y = bottom;
    addBlock (text, { 40.0f, y, width - 60.0f, height - y }, normalFontHeight, juce::Font::plain);
}

void ScreenText::addNotice (const juce::String& text)
{
    addBlock (text, { noticeX, topY, width - 125.0f, height - topY }, normalFontHeight, juce::Font::plain);
}

/** A block of as many lines as the normal font has room for, whatever the font is. */
void ScreenText::addBlock (const juce::String& text, juce::Rectangle<float> area, float fontHeight, int style)
{
    words.add (text.trim());
    bottom = addFittedText (glyphs,
                            FontOptions (TxtLoader::getInstance()->getFont(), fontHeight, style),
                            text,
                            area,
                            juce::Justification::topLeft,
                            static_cast<int> (area.getHeight() / normalFontHeight));
}

void ScreenText::addLines (
    const juce::String& text, const juce::Font& font, float x, float y, float blockWidth, int lines)
{
    words.add (text.trim());
    bottom = addFittedText (glyphs,
                            font,
                            text,
                            { x, y, blockWidth, lineHeight * static_cast<float> (lines) },
                            juce::Justification::topLeft,
                            lines);
}

/** A text with the name of the model in its place. */
juce::String ScreenText::textFor (TextId id)
{
    const auto& texts = *TxtLoader::getInstance();
    return formatted (texts.getString (id).toRawUTF8(), texts.getString (TextId::model).toRawUTF8());
}

} // namespace wqv
