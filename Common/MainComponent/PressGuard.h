// SPDX-License-Identifier: GPL-3.0-or-later
// Whether a press, by mouse or key, began on the screen that is shown.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Watches mouse and keys, so that a press counts only on the screen on which it began: who holds Return or clicks three
    times on one screen has not yet seen the next one.

    All that is down at the same time is one press, and so are the clicks of a double click. Message thread only. */
class PressGuard final : private juce::MouseListener, private juce::KeyListener
{
public:
    /** @param panelToWatch  with all that is in it; outlives this object */
    explicit PressGuard (juce::Component& panelToWatch);
    ~PressGuard() override;

    PressGuard (const PressGuard&) = delete;
    PressGuard& operator= (const PressGuard&) = delete;

    /** Another screen is shown from now on. */
    void screenChanged() { isOld = isMouseDown() || isKeyDown(); }

    /** The keyboard has come from elsewhere: from another window, or from the menu. */
    void keyboardCame() { isOld = isOld || isKeyDown(); }

    /** Whether the press that is going on began on an earlier screen, or elsewhere. While nothing is down there is none. */
    [[nodiscard]] bool pressIsOld() const { return isOld; }

private:
    void mouseDown (const juce::MouseEvent& event) override;
    void mouseUp (const juce::MouseEvent& event) override;
    bool keyPressed (const juce::KeyPress& key, juce::Component* origin) override;
    bool keyStateChanged (bool isPress, juce::Component* origin) override;

    [[nodiscard]] static bool isMouseDown();
    [[nodiscard]] bool isKeyDown() const;

    juce::Component& panel;
    bool isOld = false;
};

} // namespace wqv
