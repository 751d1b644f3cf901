// SPDX-License-Identifier: GPL-3.0-or-later
// X11's answers to what the program's window asks of a system.

#include "CurrentDesktop.h"
#include "DisplayEvents.h"
#include "DisplayLoss.h"
#include "FixedSize.h"
#include "SingleInstance.h"
#include "WindowSystem.h"

#include <cstdlib>
#include <iostream>
#include <utility>

namespace wqv
{
namespace
{

class LinuxWindowAttachment final : public WindowAttachment
{
public:
    LinuxWindowAttachment (juce::ResizableWindow& windowToUse,
                           const SingleInstance& instanceToUse,
                           std::function<void()> onDisplayLoss)
        : window (windowToUse), instance (instanceToUse), displayLoss (std::move (onDisplayLoss))
    {
        if (instance.descriptor() >= 0)
            juce::LinuxEventLoop::registerFdCallback (instance.descriptor(), [this] (int) { answerInstances(); });
    }

    ~LinuxWindowAttachment() override
    {
        if (instance.descriptor() >= 0)
            juce::LinuxEventLoop::unregisterFdCallback (instance.descriptor());
    }

    void raise() override
    {
        if (const auto* const peer = window.getPeer())
            bringToCurrentDesktop (reinterpret_cast<unsigned long> (peer->getNativeHandle()));

        window.toFront (true);
    }

private:
    /** An instance that asks while this one is leaving is not answered: it starts when this one is gone. */
    void answerInstances()
    {
        if (window.isVisible())
            instance.answer ([this] { raise(); });
    }

    juce::ResizableWindow& window;
    const SingleInstance& instance;
    const DisplayLoss displayLoss;
    const FixedSize fixedSize { window };
    const DisplayEvents displayEvents { window };
};

class LinuxWindowSystem final : public WindowSystem
{
public:
    explicit LinuxWindowSystem (const std::string& programToUse) : program (programToUse), instance (program, display())
    {
    }

    [[nodiscard]] std::optional<int> yieldToOtherInstance() override
    {
        switch (instance.start())
        {
            case SingleInstance::Start::raised: return EXIT_SUCCESS;
            case SingleInstance::Start::noAnswer:
                say ("it is running already, but does not answer");
                return EXIT_FAILURE;
            case SingleInstance::Start::unguarded: say ("cannot tell whether it is running already"); break;
            case SingleInstance::Start::first: break;
        }

        return {};
    }

    /** JUCE's lock is a file in a public folder, which any user could hold. */
    [[nodiscard]] bool leavesInstancesToJuce() const override { return false; }

    [[nodiscard]] std::unique_ptr<WindowAttachment> attach (juce::ResizableWindow& window,
                                                            std::function<void()> onDisplayLoss) override
    {
        return std::make_unique<LinuxWindowAttachment> (window, instance, std::move (onDisplayLoss));
    }

private:
    static std::string display()
    {
        const auto* const name = std::getenv ("DISPLAY"); // NOLINT (concurrency-mt-unsafe): nothing changes it
        return name != nullptr ? name : "";
    }

    void say (const char* what) const { std::cerr << program << ": " << what << '\n'; }

    const std::string program;
    SingleInstance instance;
};

} // namespace

std::unique_ptr<WindowSystem> makeWindowSystem (const std::string& program)
{
    return std::make_unique<LinuxWindowSystem> (program);
}

} // namespace wqv
