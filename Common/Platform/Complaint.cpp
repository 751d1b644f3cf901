// SPDX-License-Identifier: GPL-3.0-or-later
// The program's name and a text, as one line on standard error.

#include "Complaint.h"

#include <juce_core/juce_core.h>

#include <iostream>
#include <string>

namespace wqv
{

void complain (std::string_view text)
{
    const auto program = juce::File::getSpecialLocation (juce::File::currentExecutableFile).getFileName().toStdString();

    // In one piece.
    std::cerr << program + ": " + std::string (text) + '\n';
}

} // namespace wqv
