// SPDX-License-Identifier: GPL-3.0-or-later
// drawIcon: shape, colours and character.

#include "Icon.h"

#include "JuceVersions.h"

#include <cmath>

namespace wqv
{

void drawIcon (juce::Graphics& g, int kind)
{
    constexpr int none = 0;
    constexpr int warning = 2;
    constexpr int information = 3;

    if (kind == none)
        return;

    const auto isWarning = kind == warning;
    const juce::Rectangle<float> sign (20.0f, 15.0f, 64.0f, 64.0f);
    const juce::Colour black (0x99000000);
    const juce::Colour blue (0x990000FF);

    juce::Path shape;

    if (isWarning)
    {
        shape.addTriangle ({ sign.getCentreX(), sign.getY() }, sign.getBottomRight(), sign.getBottomLeft());
        shape = shape.createPathWithRoundedCorners (5.0f);
    }
    else
    {
        shape.addEllipse (sign);
    }

    shape.setUsingNonZeroWinding (false);
    g.setColour (juce::Colour (isWarning ? 0x99FFFF00 : 0x99FFFFFF));
    g.fillPath (shape);
    g.setColour (black);
    g.strokePath (shape, juce::PathStrokeType (4.0f, juce::PathStrokeType::mitered, juce::PathStrokeType::butt));

    // The exclamation mark goes into the wider, lower part of the triangle.
    const auto characterArea = isWarning ? sign.withY (std::trunc (sign.getY() * 1.5f)) : sign;

    g.setColour (isWarning ? black : blue);
    g.setFont (FontOptions (0.9f * sign.getHeight(), juce::Font::bold));
    g.drawFittedText (isWarning             ? "!"
                      : kind == information ? "i"
                                            : "?",
                      characterArea.toNearestInt(),
                      juce::Justification::centred,
                      0,
                      0.7f);
}

} // namespace wqv
