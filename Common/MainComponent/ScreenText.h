// SPDX-License-Identifier: GPL-3.0-or-later
// The text of each screen, laid out.

#pragma once

#include "TextId.h"
#include "UpdaterStatus.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <cstdint>

namespace wqv
{

/** What the text of a screen depends on, but the language. Versions are decimal numbers: 105 is 1.05. */
struct ScreenState
{
    UpdaterStatus_t status = UPDATER_STATUS_START;
    bool packageValid = false;
    std::int32_t deviceVersion = -1;
    std::int32_t packageVersion = 0;
};

/** Formats by the rules of printf. Arguments beyond the format's own are not looked at.
    @param utf8Format  UTF-8, as are arguments for "%s"
    @returns an empty text if that cannot be done */
[[nodiscard, gnu::format (printf, 1, 2)]] juce::String formatted (const char* utf8Format, ...);

/** Lays out one screen in the current language. Texts and fonts come from the TxtLoader. Message thread only.

    Blocks are in pixels of the panel, aligned to their top left, and fitted as addFittedText says.
*/
class ScreenText
{
public:
    /** @param panelWidth, panelHeight  pixels of the area that the screens fill */
    ScreenText (int panelWidth, int panelHeight);

    /** Replaces the text by that of another screen. */
    void layOut (const ScreenState& state);

    void draw (const juce::Graphics& g) const { glyphs.draw (g); }

    /** The words of the screen, a block a line. */
    [[nodiscard]] juce::String getWords() const { return words.joinIntoString ("\n"); }

    /** The laid-out text, as one line of characters in the order of the blocks. */
    [[nodiscard]] const juce::GlyphArrangement& getGlyphs() const { return glyphs; }

private:
    void addBlock (const juce::String& text, juce::Rectangle<float> area, float fontHeight, int style);
    void addTitle (const juce::String& text, int style);
    void addBody (const juce::String& text);
    void addNotice (const juce::String& text);
    void addReadyScreen (const ScreenState& state);
    void dispHowToUpdate (float x, float y, unsigned language, const juce::String& fontName, bool showNotRecognized);
    void dispHowToStart (float x, float y, unsigned language, const juce::String& fontName);
    void addLines (const juce::String& text, const juce::Font& font, float x, float y, float blockWidth, int lines);

    [[nodiscard]] static juce::String textFor (TextId id);

    float width;
    float height;
    float bottom = 0.0f; ///< of the last block, in pixels
    juce::GlyphArrangement glyphs;
    juce::StringArray words;
};

} // namespace wqv
