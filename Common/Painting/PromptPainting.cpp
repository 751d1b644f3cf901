// SPDX-License-Identifier: GPL-3.0-or-later
// A watch over each window's repaint() in the place of its cached image, and a low frequency in JUCE's list of displays.

#include "PromptPainting.h"

#include <utility>

namespace wqv
{
namespace
{

/** JUCE's windows take the frequency from its list of displays when they are made and when they move, and the list may be a new
    one after a change of the desktop's settings. */
void makeFramesRare()
{
    constexpr double framesPerSecond = 4;

    // The list is public, but a desktop shows it only to read.
    for (auto& display : const_cast<juce::Displays&> (juce::Desktop::getInstance().getDisplays()).displays)
        display.verticalFrequencyHz = framesPerSecond;
}

} // namespace

/** JUCE tells it of every repaint() in the window. JUCE asks it for a picture only of a component inside another, which a
    window is not. */
class PromptPainting::Watch final : public juce::CachedComponentImage
{
public:
    static void over (juce::Component& window)
    {
        if (window.getCachedComponentImage() == nullptr)
            window.setCachedComponentImage (new Watch (window)); // which owns it
    }

    bool invalidateAll() override
    {
        if (keeper != nullptr)
            keeper->triggerAsyncUpdate();

        return true; // go on
    }

    bool invalidate (const juce::Rectangle<int>& /*area*/) override { return invalidateAll(); }
    void paint (juce::Graphics& g) override { window.paintEntireComponent (g, false); }
    void releaseResources() override {}

    static inline PromptPainting* keeper = nullptr; ///< a window may outlive it

private:
    explicit Watch (juce::Component& windowToWatch) : window (windowToWatch) {}

    juce::Component& window;
};

PromptPainting::PromptPainting (juce::Component& window, std::function<void()> whenPaintedToUse)
    : whenPainted (std::move (whenPaintedToUse))
{
    Watch::keeper = this;
    Watch::over (window);
    makeFramesRare();
}

PromptPainting::~PromptPainting()
{
    Watch::keeper = nullptr;
}

void PromptPainting::paint()
{
    makeFramesRare();

    for (auto i = juce::ComponentPeer::getNumPeers(); --i >= 0;)
    {
        // What is painted may close a window.
        auto* const peer = juce::ComponentPeer::getPeer (i);

        if (peer == nullptr)
            continue;

        Watch::over (peer->getComponent());
        peer->performAnyPendingRepaintsNow();
    }

    if (whenPainted)
        whenPainted();
}

} // namespace wqv
