// SPDX-License-Identifier: GPL-3.0-or-later
// When a press begins and ends, as mouse and keys tell it.

#include "PressGuard.h"

#include <algorithm>
#include <array>

namespace wqv
{

PressGuard::PressGuard (juce::Component& panelToWatch) : panel (panelToWatch)
{
    panel.addMouseListener (this, true);
    panel.addKeyListener (this);
}

PressGuard::~PressGuard()
{
    panel.removeKeyListener (this);
    panel.removeMouseListener (this);
}

bool PressGuard::isMouseDown()
{
    return juce::ModifierKeys::getCurrentModifiers().isAnyMouseButtonDown();
}

/** Whether a key that presses a button is down. */
bool PressGuard::isKeyDown() const
{
    // JUCE (7.0.5, 8.0.6) reports the Enter of the keypad as Return, but knows by this code whether it is down.
    constexpr int keypadEnter = 0x1000008d;
    const std::array keys { juce::KeyPress::returnKey, keypadEnter, juce::KeyPress::spaceKey };

    // JUCE (7.0.5, 8.0.6) crashes when it is asked for keys without a display.
    return panel.getPeer() != nullptr && std::ranges::any_of (keys, juce::KeyPress::isKeyCurrentlyDown);
}

void PressGuard::mouseDown (const juce::MouseEvent& event)
{
    isOld = event.getNumberOfClicks() > 1 || (isOld && isKeyDown());
}

/** Called after the button has been. */
void PressGuard::mouseUp (const juce::MouseEvent& /*event*/)
{
    isOld = isOld && isKeyDown();
}

bool PressGuard::keyPressed (const juce::KeyPress& /*key*/, juce::Component* /*origin*/)
{
    return false;
}

bool PressGuard::keyStateChanged (bool isPress, juce::Component* /*origin*/)
{
    if (! isPress)
        isOld = isOld && (isMouseDown() || isKeyDown());

    return false;
}

} // namespace wqv
