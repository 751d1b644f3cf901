// SPDX-License-Identifier: GPL-3.0-or-later
// The look of a push button's background.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Draws a button as a rounded shape with a gradient that is dark in its middle, or blue while it is pressed. */
class BtnLookAndFeel final : public juce::LookAndFeel_V2
{
public:
    void drawButtonBackground (juce::Graphics& g,
                               juce::Button& button,
                               const juce::Colour& backgroundColour,
                               bool isMouseOver,
                               bool isButtonDown) override;

    /** Draws the background into @p area.
        @param colour            its darker forms are the middle of the gradient and the outline
        @param outlineThickness  pixels; an area that is no wider or higher than this is left empty
        @param cornerSize        pixels; negative for half of the smaller side */
    static void drawBackground (juce::Graphics& g,
                                juce::Rectangle<float> area,
                                juce::Colour colour,
                                float outlineThickness,
                                float cornerSize,
                                bool isPressed);
};

} // namespace wqv
