// SPDX-License-Identifier: GPL-3.0-or-later
// How the progress bar is drawn: its gradient and the percentage.

#include "ProgressLookAndFeel.h"

#include "FittedText.h"
#include "JuceVersions.h"

namespace wqv
{

void ProgressLookAndFeel::drawProgressBar (
    juce::Graphics& g, juce::ProgressBar& bar, int width, int height, double progress, const juce::String& textToShow)
{
    constexpr float border = 2.0f;

    g.fillAll (bar.findColour (juce::ProgressBar::backgroundColourId));

    const auto fullWidth = static_cast<double> (width) - 4.0;
    const auto filledWidth = juce::jlimit (0.0, juce::jmax (0.0, fullWidth), fullWidth * progress);
    const auto innerHeight = static_cast<float> (height) - 4.0f;

    juce::ColourGradient gradient (
        juce::Colour (167, 167, 167), border, border, juce::Colour (108, 108, 108), border, innerHeight, false);
    gradient.addColour (0.5, juce::Colour (100, 100, 100));

    g.setGradientFill (gradient);
    g.fillRect (border, border, static_cast<float> (filledWidth), innerHeight);

    if (textToShow.isNotEmpty())
    {
        g.setColour (juce::Colours::white);
        drawFittedLine (g,
                        FontOptions (static_cast<float> (height) * 0.8f, juce::Font::plain),
                        textToShow,
                        { 0, 0, width, height },
                        juce::Justification::centred);
    }
}

} // namespace wqv
