// SPDX-License-Identifier: GPL-3.0-or-later
// A push button's background: its outline and gradient.

#include "BtnLookAndFeel.h"

namespace wqv
{
namespace
{

/** A rectangle with rounded corners, clockwise from the top left one. */
juce::Path outlineOf (juce::Rectangle<float> area, float corner)
{
    constexpr float quarterTurn = juce::MathConstants<float>::halfPi;
    const auto diameter = 2.0f * corner;
    const auto right = area.getRight() - diameter;
    const auto bottom = area.getBottom() - diameter;

    juce::Path path;
    path.addArc (area.getX(), area.getY(), diameter, diameter, 3.0f * quarterTurn, 4.0f * quarterTurn, true);
    path.addArc (right, area.getY(), diameter, diameter, 0.0f, quarterTurn);
    path.addArc (right, bottom, diameter, diameter, quarterTurn, 2.0f * quarterTurn);
    path.addArc (area.getX(), bottom, diameter, diameter, 2.0f * quarterTurn, 3.0f * quarterTurn);
    path.closeSubPath();
    return path;
}

} // namespace

void BtnLookAndFeel::drawButtonBackground (juce::Graphics& g,
                                           juce::Button& button,
                                           const juce::Colour& backgroundColour,
                                           bool /*isMouseOver*/,
                                           bool isButtonDown)
{
    constexpr float inset = 0.5f;

    drawBackground (g, button.getLocalBounds().toFloat().reduced (inset), backgroundColour, 1.0f, -1.0f, isButtonDown);
}

void BtnLookAndFeel::drawBackground (juce::Graphics& g,
                                     juce::Rectangle<float> area,
                                     juce::Colour colour,
                                     float outlineThickness,
                                     float cornerSize,
                                     bool isPressed)
{
    if (outlineThickness >= area.getWidth() || outlineThickness >= area.getHeight())
        return;

    const auto corner = cornerSize < 0.0f ? juce::jmin (area.getHeight() * 0.5f, area.getWidth() * 0.5f) : cornerSize;
    const auto outline = outlineOf (area, corner);

    const auto topColour = isPressed ? juce::Colour (185, 200, 240) : juce::Colours::white;
    const auto middleColour = isPressed ? juce::Colour (82, 156, 231) : colour.darker (0.2f);
    const auto bottomColour = isPressed ? juce::Colour (140, 222, 253) : juce::Colours::white;

    juce::ColourGradient gradient (topColour, 0.0f, area.getY(), bottomColour, 0.0f, area.getBottom(), false);
    gradient.addColour (0.5, middleColour);

    g.setGradientFill (gradient);
    g.fillPath (outline);
    g.setColour (colour.darker (0.7f));
    g.strokePath (outline, juce::PathStrokeType (outlineThickness));
}

} // namespace wqv
