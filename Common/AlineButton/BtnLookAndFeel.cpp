// SPDX-License-Identifier: GPL-3.0-or-later
// The button's outline and gradient.

#include "BtnLookAndFeel.h"

namespace wqv
{
namespace
{

constexpr float quarterTurn = juce::MathConstants<float>::halfPi;

/** The rounded outline, clockwise from the top left corner. */
juce::Path outlineOf (juce::Rectangle<float> area, float corner, BtnLookAndFeel::FlatSides flat)
{
    const auto diameter = 2.0f * corner;
    const auto left = area.getX();
    const auto top = area.getY();
    const auto right = area.getRight();
    const auto bottom = area.getBottom();
    const auto arc = [&] (juce::Path& path, float x, float y, float quarter)
    { path.addArc (x, y, diameter, diameter, quarter * quarterTurn, (quarter + 1.0f) * quarterTurn); };

    juce::Path path;

    if (! (flat.left || flat.top))
    {
        path.startNewSubPath (left, top + corner);
        arc (path, left, top, 3.0f);
    }
    else
    {
        path.startNewSubPath (left, top);
    }

    if (! (flat.right || flat.top))
    {
        path.lineTo (right - corner, top);
        arc (path, right - diameter, top, 0.0f);
    }
    else
    {
        path.lineTo (right, top);
    }

    if (! (flat.bottom || flat.right))
    {
        path.lineTo (right, bottom - corner);
        arc (path, right - diameter, bottom - diameter, 1.0f);
    }
    else
    {
        path.lineTo (right, bottom);
    }

    if (! (flat.left || flat.bottom))
    {
        path.lineTo (left + corner, bottom);
        arc (path, left, bottom - diameter, 2.0f);
    }
    else
    {
        path.lineTo (left, bottom);
    }

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
    const FlatSides connected { .left = button.isConnectedOnLeft(),
                                .right = button.isConnectedOnRight(),
                                .top = button.isConnectedOnTop(),
                                .bottom = button.isConnectedOnBottom() };
    const auto indent = [] (bool isConnected) { return isConnected ? 0.1f : 0.5f; };

    const auto area = button.getLocalBounds()
                          .toFloat()
                          .withTrimmedLeft (indent (connected.left))
                          .withTrimmedRight (indent (connected.right))
                          .withTrimmedTop (indent (connected.top))
                          .withTrimmedBottom (indent (connected.bottom));

    drawBackground (g, area, backgroundColour, 1.0f, -1.0f, connected, isButtonDown);
}

void BtnLookAndFeel::drawBackground (juce::Graphics& g,
                                     juce::Rectangle<float> area,
                                     juce::Colour colour,
                                     float outlineThickness,
                                     float cornerSize,
                                     FlatSides flat,
                                     bool isPressed)
{
    if (outlineThickness >= area.getWidth() || outlineThickness >= area.getHeight())
        return;

    const auto corner = cornerSize < 0.0f ? juce::jmin (area.getHeight() * 0.5f, area.getWidth() * 0.5f) : cornerSize;
    const auto outline = outlineOf (area, corner, flat);

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
