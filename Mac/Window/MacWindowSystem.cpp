// SPDX-License-Identifier: GPL-3.0-or-later
// macOS's answers to what the program's window asks of a system.

#include "TextResource.h"
#include "WindowSystem.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{
namespace
{

class MacWindowAttachment final : public WindowAttachment
{
public:
    explicit MacWindowAttachment (juce::ResizableWindow& windowToUse) : window (windowToUse) {}

    void raise() override
    {
        juce::Process::makeForegroundProcess();
        window.toFront (true);
    }

private:
    juce::ResizableWindow& window;
};

/** The display does not go away without the session, and its end is one of those that JUCE asks the application for. */
class MacWindowSystem final : public WindowSystem
{
public:
    [[nodiscard]] std::optional<int> yieldToOtherInstance() override { return {}; }

    /** Its lock lies in a folder of the user's, and its message reaches the other instance. */
    [[nodiscard]] bool leavesInstancesToJuce() const override { return true; }

    [[nodiscard]] FlgTable fontSection() const override { return FLG_FONT_MAC; }

    [[nodiscard]] std::unique_ptr<WindowAttachment> attach (juce::ResizableWindow& window,
                                                            std::function<void()> /*onDisplayLoss*/) override
    {
        return std::make_unique<MacWindowAttachment> (window);
    }
};

} // namespace

std::unique_ptr<WindowSystem> makeWindowSystem (const std::string& /*program*/)
{
    return std::make_unique<MacWindowSystem>();
}

} // namespace wqv
