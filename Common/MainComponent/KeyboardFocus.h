// SPDX-License-Identifier: GPL-3.0-or-later
// Which button of the panel has the keyboard.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Gives the keyboard to the button that goes on from a screen, and draws the line around the button that has it. A window
    in the background takes the keyboard from nobody: the button gets it as soon as the window has it.

    Where a screen names no button, the panel has the keyboard, and Tab leads from there to the buttons. Message thread
    only. */
class KeyboardFocus
{
public:
    /** For the first screen, where okButton gets the keyboard. All three outlive this object. */
    KeyboardFocus (juce::Component& panelToUse, juce::Component& okButtonToUse, juce::Component& cancelButtonToUse);

    /** Another screen is shown from now on.
        @param buttonToUse  gets the keyboard, if it is visible; null for none */
    void screenChanged (juce::Component* buttonToUse);

    // What the panel's functions of these names are to do.

    void focusGained() { pass(); }
    void focusOfChildComponentChanged();
    [[nodiscard]] bool keyPressed (const juce::KeyPress& key);

    /** Draws the line. JUCE's own (7.0.5, 8.0.6) is made by a message after the focus has come, and so often drawn a frame
        later. */
    void paint (juce::Graphics& g) const;

private:
    void pass();

    juce::Component& panel;
    juce::Component& okButton;
    juce::Component& cancelButton;
    juce::Component* button; ///< gets the keyboard
    bool isDue = true;       ///< it has not got it yet
};

} // namespace wqv
