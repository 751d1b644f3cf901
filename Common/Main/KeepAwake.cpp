// SPDX-License-Identifier: GPL-3.0-or-later
// The machine by logind, the screen by the toolkit.

#include "KeepAwake.h"

#include "ScreenText.h"
#include "TxtLoader.h"

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

KeepAwake::KeepAwake (const juce::String& applicationName) : inhibitor (applicationName.toStdString(), reason())
{
    juce::Desktop::setScreenSaverEnabled (false);
}

KeepAwake::~KeepAwake()
{
    juce::Desktop::setScreenSaverEnabled (true);
}

} // namespace wqv
