// SPDX-License-Identifier: GPL-3.0-or-later
// The look of the progress bar.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** Draws a grey gradient bar with white text in its middle. */
class ProgressLookAndFeel final : public juce::LookAndFeel_V2
{
public:
    /** @param progress  0.0 to 1.0; what lies beyond is drawn as the nearer end */
    void drawProgressBar (juce::Graphics& g,
                          juce::ProgressBar& bar,
                          int width,
                          int height,
                          double progress,
                          const juce::String& textToShow) override;
};

} // namespace wqv
