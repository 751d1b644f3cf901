// SPDX-License-Identifier: GPL-3.0-or-later
// Windows's answers to what the program's window asks of a system.

#include "PromptPainting.h"
#include "SessionEnd.h"
#include "TextResource.h"
#include "WindowSystem.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <utility>

#include <windows.h>

namespace wqv
{
namespace
{

class WindowsWindowAttachment final : public WindowAttachment
{
public:
    WindowsWindowAttachment (juce::ResizableWindow& windowToUse, std::function<void()> onSessionEnd)
        : window (windowToUse), sessionEnd (window, std::move (onSessionEnd))
    {
    }

    void raise() override { window.toFront (true); }

private:
    juce::ResizableWindow& window;
    const SessionEnd sessionEnd;
    const PromptPainting painting { window };
};

/** The display does not go away without the session. */
class WindowsWindowSystem final : public WindowSystem
{
public:
    /** There is nothing to wait for: JUCE finds the other instance. But only who was started by the user may give another
        process the right to come to the front. */
    [[nodiscard]] std::optional<int> yieldToOtherInstance() override
    {
        AllowSetForegroundWindow (ASFW_ANY);
        return {};
    }

    /** Its lock is a name of the user's session, and its message reaches the other instance. */
    [[nodiscard]] bool leavesInstancesToJuce() const override { return true; }

    [[nodiscard]] FlgTable fontSection() const override { return FLG_NONE; }

    [[nodiscard]] std::unique_ptr<WindowAttachment> attach (juce::ResizableWindow& window,
                                                            std::function<void()> onDisplayLoss) override
    {
        return std::make_unique<WindowsWindowAttachment> (window, std::move (onDisplayLoss));
    }
};

} // namespace

std::unique_ptr<WindowSystem> makeWindowSystem (const std::string& /*program*/)
{
    return std::make_unique<WindowsWindowSystem>();
}

} // namespace wqv
