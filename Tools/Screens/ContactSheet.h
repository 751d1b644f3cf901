// SPDX-License-Identifier: GPL-3.0-or-later
// Labelled pictures side by side.

#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <vector>

namespace wqv
{

/** Writes a picture as PNG.
    @returns false, with a line on standard error, if that cannot be done */
[[nodiscard]] bool writePicture (const juce::Image& picture, const juce::File& file);

/** Collects pictures of one size, and writes them as sheets that are small enough to be looked at without loss. */
class ContactSheet
{
public:
    /** @param label  drawn above the picture, in a font that has its characters */
    void add (const juce::Image& picture, const juce::String& label, const juce::Font& font);

    /** Writes as many sheets as it takes, as NAME-1.png and so on.
        @returns false if that cannot be done */
    [[nodiscard]] bool write (const juce::File& folder, const juce::String& name) const;

private:
    std::vector<juce::Image> cells;
};

} // namespace wqv
