// SPDX-License-Identifier: GPL-3.0-or-later
// Labelled pictures, put together to sheets and written as PNG.

#include "ContactSheet.h"

#include <iostream>

namespace wqv
{

bool writePicture (const juce::Image& picture, const juce::File& file)
{
    file.deleteFile();
    juce::FileOutputStream stream (file);

    if (stream.openedOk() && juce::PNGImageFormat().writeImageToStream (picture, stream))
    {
        stream.flush();

        if (stream.getStatus().wasOk())
            return true;
    }

    std::cerr << "cannot write " << file.getFullPathName() << '\n';
    return false;
}

void ContactSheet::add (const juce::Image& picture, const juce::String& label, const juce::Font& font)
{
    constexpr int gap = 4;
    constexpr int labelHeight = 18;

    const auto width = picture.getWidth() + 2 * gap;
    const auto& cell = cells.emplace_back (juce::Image::RGB, width, picture.getHeight() + 2 * gap + labelHeight, false);
    juce::Graphics g (cell);

    g.fillAll (juce::Colours::white);
    g.setColour (juce::Colours::black);
    g.setFont (font);
    g.drawText (label, gap, gap, picture.getWidth(), labelHeight, juce::Justification::centredLeft);
    g.drawImageAt (picture, gap, gap + labelHeight);
}

bool ContactSheet::write (const juce::File& folder, const juce::String& name) const
{
    constexpr int largestWidth = 1700;
    constexpr int largestHeight = 1100;

    const auto cell = cells.front().getBounds();
    const auto columns = largestWidth / cell.getWidth();
    const auto mostInOne = columns * (largestHeight / cell.getHeight());
    const auto count = static_cast<int> (cells.size());

    for (int first = 0; first < count; first += mostInOne)
    {
        const auto inThis = juce::jmin (mostInOne, count - first);
        const auto rows = (inThis + columns - 1) / columns;
        const juce::Image sheet (juce::Image::RGB, columns * cell.getWidth(), rows * cell.getHeight(), true);
        juce::Graphics g (sheet);

        auto next = cells.begin() + first;

        for (int i = 0; i < inThis; ++i)
            g.drawImageAt (*next++, i % columns * cell.getWidth(), i / columns * cell.getHeight());

        if (! writePicture (sheet, folder.getChildFile (name + "-" + juce::String (1 + first / mostInOne) + ".png")))
            return false;
    }

    return true;
}

} // namespace wqv
