// SPDX-License-Identifier: GPL-3.0-or-later
// The machine is kept awake by the system, the screen by JUCE.

#include "KeepAwake.h"

#include "ScreenText.h"
#include "TxtLoader.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{
namespace
{

std::string reason()
{
    const auto& texts = *TxtLoader::getInstance();
    return formatted (texts.getString (TextId::updating).toRawUTF8(), texts.getString (TextId::model).toRawUTF8())
        .toStdString();
}

} // namespace

KeepAwake::KeepAwake (const Platform& platform, const std::string& program)
    : machine (platform.keepAwake (program, reason()))
{
    juce::Desktop::setScreenSaverEnabled (false);
}

KeepAwake::~KeepAwake()
{
    juce::Desktop::setScreenSaverEnabled (true);
}

} // namespace wqv
