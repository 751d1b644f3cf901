// SPDX-License-Identifier: GPL-3.0-or-later
// Passing the keyboard on to a button, and drawing the line around it.

#include "KeyboardFocus.h"

namespace wqv
{

KeyboardFocus::KeyboardFocus (juce::Component& panelToUse,
                              juce::Component& okButtonToUse,
                              juce::Component& cancelButtonToUse)
    : panel (panelToUse), okButton (okButtonToUse), cancelButton (cancelButtonToUse), button (&okButton)
{
    panel.setWantsKeyboardFocus (true);
    panel.setMouseClickGrabsKeyboardFocus (false);
    panel.setFocusContainerType (juce::Component::FocusContainerType::keyboardFocusContainer); // Tab stays in the panel
}

void KeyboardFocus::screenChanged (juce::Component* buttonToUse)
{
    button = buttonToUse;
    isDue = true;
    pass();
}

/** Gives the keyboard to whom it belongs, if the window has it. */
void KeyboardFocus::pass()
{
    const auto* const peer = panel.getPeer();

    if (peer == nullptr || ! peer->isFocused())
        return;

    isDue = false;
    (button != nullptr && button->isVisible() ? *button : panel).grabKeyboardFocus();
}

void KeyboardFocus::focusOfChildComponentChanged()
{
    if (isDue)
        pass();
}

bool KeyboardFocus::keyPressed (const juce::KeyPress& key)
{
    // Once a button has the keyboard, JUCE follows Tab.
    if (! key.isKeyCode (juce::KeyPress::tabKey) || ! panel.hasKeyboardFocus (false) || ! cancelButton.isVisible())
        return false;

    (key.getModifiers().isShiftDown() && okButton.isVisible() ? okButton : cancelButton).grabKeyboardFocus();
    return true;
}

void KeyboardFocus::paint (juce::Graphics& g) const
{
    constexpr float distance = 3.0f;
    constexpr float thickness = 2.0f;

    for (const auto* const candidate : { &okButton, &cancelButton })
    {
        if (candidate->hasKeyboardFocus (false))
        {
            const auto line = candidate->getBounds().toFloat().expanded (distance);

            g.setColour (juce::Colour (82, 156, 231));
            g.drawRoundedRectangle (line, line.getHeight() / 2.0f, thickness);
        }
    }
}

} // namespace wqv
