// SPDX-License-Identifier: GPL-3.0-or-later
// X11's answers to what the program's window asks of a system.

#include "Complaint.h"
#include "CurrentDesktop.h"
#include "DisplayEvents.h"
#include "DisplayLoss.h"
#include "FixedSize.h"
#include "PromptPainting.h"
#include "SingleInstance.h"
#include "TextResource.h"
#include "WindowSystem.h"

#include <cstdlib>
#include <utility>

namespace wqv
{
namespace
{

class LinuxWindowAttachment final : public WindowAttachment
{
public:
    LinuxWindowAttachment (juce::ResizableWindow& windowToUse,
                           SingleInstance* instanceToUse,
                           std::function<void()> onDisplayLoss)
        : window (windowToUse), instance (instanceToUse), displayLoss (std::move (onDisplayLoss))
    {
        if (instance != nullptr)
            juce::LinuxEventLoop::registerFdCallback (instance->descriptor(), [this] (int) { answerInstances(); });
    }

    ~LinuxWindowAttachment() override
    {
        if (instance != nullptr)
            juce::LinuxEventLoop::unregisterFdCallback (instance->descriptor());
    }

    void raise() override
    {
        bringToCurrentDesktop (window);
        window.toFront (true);
    }

private:
    /** An instance that asks while this one is leaving is not answered: it starts when this one is gone. */
    void answerInstances()
    {
        if (window.isVisible())
            instance->answer ([this] { raise(); });
    }

    juce::ResizableWindow& window;
    SingleInstance* const instance; ///< null where none is the first
    const DisplayLoss displayLoss;
    const FixedSize fixedSize { window };
    PromptPainting painting { window, DisplayEvents::flush };
    const DisplayEvents displayEvents { [this] { painting.paint(); } };
};

class LinuxWindowSystem final : public WindowSystem
{
public:
    explicit LinuxWindowSystem (std::string programToUse) : program (std::move (programToUse)) {}

    [[nodiscard]] std::optional<int> yieldToOtherInstance() override
    {
        instance.emplace (program);

        switch (instance->start())
        {
            case SingleInstance::Start::first: return {};
            case SingleInstance::Start::raised: return EXIT_SUCCESS;
            case SingleInstance::Start::noAnswer: break;
        }

        complain ("it is running already, but does not answer");
        return EXIT_FAILURE;
    }

    /** JUCE's lock (7.0.5, 8.0.6) is a file in a public folder, which any user could hold. */
    [[nodiscard]] bool leavesInstancesToJuce() const override { return false; }

    /** JUCE (7.0.5, 8.0.6) would read every font file of the machine. */
    [[nodiscard]] FlgTable fontSection() const override { return FLG_NONE; }

    [[nodiscard]] std::unique_ptr<WindowAttachment> attach (juce::ResizableWindow& window,
                                                            std::function<void()> onDisplayLoss) override
    {
        auto* const first = instance && instance->descriptor() >= 0 ? &*instance : nullptr;
        return std::make_unique<LinuxWindowAttachment> (window, first, std::move (onDisplayLoss));
    }

private:
    const std::string program;
    std::optional<SingleInstance> instance; ///< none in a program that does not ask
};

} // namespace

std::unique_ptr<WindowSystem> makeWindowSystem (const std::string& program)
{
    return std::make_unique<LinuxWindowSystem> (program);
}

} // namespace wqv
