// SPDX-License-Identifier: GPL-3.0-or-later
// The program's typefaces for tests that draw without its panel.

#pragma once

#include "ProgramLookAndFeel.h"

namespace wqv
{

/** Makes the program's look the default one while it lives. */
struct DefaultLook
{
    DefaultLook()
    {
        EmbeddedTypefaces::skipFontsOfTheMachine();
        juce::LookAndFeel::setDefaultLookAndFeel (&look);
    }

    DefaultLook (const DefaultLook&) = delete;
    DefaultLook& operator= (const DefaultLook&) = delete;
    ~DefaultLook() { juce::LookAndFeel::setDefaultLookAndFeel (nullptr); }

    ProgramLookAndFeel look;
};

} // namespace wqv
