// SPDX-License-Identifier: GPL-3.0-or-later
// How a push button is drawn, and the keys that press it.

#include "AlineButton.h"

#include "FittedText.h"
#include "JuceVersions.h"

namespace wqv
{

AlineButton::AlineButton (const juce::String& name)
    : Button (name), m_fontName (juce::Font::getDefaultSansSerifFontName())
{
    setLookAndFeel (&m_lookAndFeel);
    setColour (juce::TextButton::buttonColourId, juce::Colours::black);
    setColour (juce::TextButton::buttonOnColourId, juce::Colours::black);
}

AlineButton::~AlineButton()
{
    setLookAndFeel (nullptr);
}

void AlineButton::setButtonText (const juce::String& newText)
{
    if (newText == getButtonText())
        repaint();
    else
        Button::setButtonText (newText);
}

void AlineButton::paintButton (juce::Graphics& g, bool isMouseOver, bool isButtonDown)
{
    constexpr int inset = 4;
    constexpr float largestFontHeight = 13.0f;

    const auto colourId = getToggleState() ? juce::TextButton::buttonOnColourId : juce::TextButton::buttonColourId;
    m_lookAndFeel.drawButtonBackground (g, *this, findColour (colourId), isMouseOver, isButtonDown);

    const auto fontHeight = juce::jmin (static_cast<float> (getHeight()) * 0.8f, largestFontHeight);

    g.setColour (juce::Colour (16, 16, 16));
    drawFittedLine (
        g, FontOptions (m_fontName, fontHeight, m_style), getButtonText(), getLocalBounds().reduced (inset), m_aline);
}

void AlineButton::focusGained (FocusChangeType cause)
{
    Button::focusGained (cause);

    if (auto* const parent = getParentComponent())
        parent->repaint();
}

void AlineButton::focusLost (FocusChangeType cause)
{
    Button::focusLost (cause);

    if (auto* const parent = getParentComponent())
        parent->repaint();
}

bool AlineButton::keyPressed (const juce::KeyPress& key)
{
    if (! key.isKeyCode (juce::KeyPress::returnKey) && ! key.isKeyCode (juce::KeyPress::spaceKey))
        return false;

    // At once, not by a message as JUCE (7.0.5, 8.0.6) does: a second key may be waiting already, and must find what this
    // one has changed.
    internalClickCallback (key.getModifiers());
    return true;
}

} // namespace wqv
