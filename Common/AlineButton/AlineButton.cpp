// SPDX-License-Identifier: GPL-3.0-or-later
// Caption over background; keys and mouse.

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

bool AlineButton::isPressingKeyDown()
{
    // The toolkit reports the Enter of the keypad as Return, but knows it by another code here.
    constexpr int keypadEnter = 0x1000008d;

    return juce::KeyPress::isKeyCurrentlyDown (juce::KeyPress::returnKey)
           || juce::KeyPress::isKeyCurrentlyDown (keypadEnter)
           || juce::KeyPress::isKeyCurrentlyDown (juce::KeyPress::spaceKey);
}

void AlineButton::ignoreHeldKeys()
{
    m_ignoresHeldKeys = isPressingKeyDown();
}

bool AlineButton::keyStateChanged (bool isAnyDown)
{
    if (m_ignoresHeldKeys && ! isPressingKeyDown())
    {
        m_ignoresHeldKeys = false;
        m_releasedAt = juce::Time::getMillisecondCounter();
    }

    return Button::keyStateChanged (isAnyDown);
}

bool AlineButton::keyPressed (const juce::KeyPress& key)
{
    if (! key.isKeyCode (juce::KeyPress::returnKey) && ! key.isKeyCode (juce::KeyPress::spaceKey))
        return false;

    // The system repeats a key that is held, and what comes of that may look like a release and a press, faster than any
    // hand.
    constexpr juce::uint32 repeatGap = 50;

    if (juce::Time::getMillisecondCounter() - m_releasedAt < repeatGap)
        m_ignoresHeldKeys = true;

    // At once, not by a message: a second key may be waiting already, and is to meet what the click has brought.
    if (! m_ignoresHeldKeys)
        internalClickCallback (key.getModifiers());

    return true;
}

void AlineButton::mouseUp (const juce::MouseEvent& event)
{
    if (event.getNumberOfClicks() == 1)
        Button::mouseUp (event);
    else
        setState (isMouseOver() ? buttonOver : buttonNormal);
}

} // namespace wqv
