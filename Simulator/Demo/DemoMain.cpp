// SPDX-License-Identifier: GPL-3.0-or-later
// The demo: the same window and engine as the program's, and a controller that tells on the console what it goes through.

#include "Application.h"
#include "DemoOptions.h"
#include "SimulatedHidService.h"
#include "TracedController.h"
#include "VirtualController.h"

#include <chrono>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>

namespace wqv
{
namespace
{

/** With the sample package about 15 seconds in all. */
ControllerPace paceOf (double factor)
{
    using namespace std::chrono_literals;
    const auto scaled = [factor] (std::chrono::milliseconds duration)
    { return std::chrono::duration_cast<std::chrono::milliseconds> (duration * factor); };

    return { .restart = scaled (1000ms),
             .erase = scaled (1500ms),
             .write = scaled (28ms),
             .complete = scaled (1500ms),
             .busyPolls = 5 };
}

/** The virtual controller, and what the command line says of it. */
class Demo
{
public:
    explicit Demo (DemoOptions optionsToUse)
        : options (std::move (optionsToUse)), controller (options.faults, paceOf (options.pace))
    {
        std::cout << std::unitbuf; // each line at once, for who follows it
        controller.setLog ([] (const std::string& line) { std::cout << "demo: " << line << '\n'; });
        std::cout << "demo: a virtual WQV-KRV20; nothing is written to any device\n";
    }

    /** Puts the recorded controller into the place of the virtual one, if that was asked for.
        @returns whether its trace could be read */
    [[nodiscard]] bool readTraceToPlay()
    {
        if (options.replayedTrace.empty())
            return true;

        std::ifstream file (options.replayedTrace);
        std::size_t badLine = 0;
        recorded.emplace (readTrace (file, badLine));

        if (badLine != 0)
            std::cerr << "demo: " << options.replayedTrace << ": line " << badLine << " is none of a trace\n";

        return badLine == 0;
    }

    std::unique_ptr<HidService> makeHidService()
    {
        auto service = std::make_unique<SimulatedHidService>();

        if (! options.controllerIsAbsent)
        {
            auto& chosen = recorded ? static_cast<SimulatedController&> (*recorded) : controller;
            chosen.happens ({ .kind = SimulatedController::Event::Kind::plugIn });
            service->plugIn (&chosen);
        }

        return service;
    }

    /** @returns whether all was written that was asked for */
    [[nodiscard]] bool writeReceivedBlocks() const
    {
        if (options.receivedDirectory.empty())
            return true;

        std::error_code error;
        std::filesystem::create_directories (options.receivedDirectory, error);

        for (const auto& [number, data] : controller.receivedBlocks())
        {
            std::ostringstream name;
            name << "block-" << (number < 10 ? "0" : "") << static_cast<int> (number) << ".bin";

            std::ofstream file (options.receivedDirectory / name.str(), std::ios::binary);
            file.write (reinterpret_cast<const char*> (data.data()), static_cast<std::streamsize> (data.size()));

            if (! file.flush())
            {
                std::cerr << "demo: cannot write " << options.receivedDirectory / name.str() << '\n';
                return false;
            }
        }

        return true;
    }

private:
    const DemoOptions options;
    VirtualController controller;
    std::optional<TracedController> recorded;
};

/** JUCE makes the application by a plain function, so this is where it finds what the application needs. */
std::unique_ptr<Demo>& theDemo()
{
    static std::unique_ptr<Demo> demo;
    return demo;
}

juce::JUCEApplicationBase* createApplication()
{
    static const auto platform = makePlatform();
    static const auto windowSystem = makeWindowSystem (Application::name);
    return new Application (*platform, *windowSystem, [] { return theDemo()->makeHidService(); });
}

int runDemo (int argc, char* argv[])
{
    int exitStatus = 0;
    const auto options = readDemoOptions (argc, argv, exitStatus);

    if (! options)
        return exitStatus;

    theDemo() = std::make_unique<Demo> (*options);

    if (! theDemo()->readTraceToPlay())
        return 1;

    juce::JUCEApplicationBase::createInstance = &createApplication;
    exitStatus = juce::JUCEApplicationBase::main (argc, const_cast<const char**> (argv));

    return theDemo()->writeReceivedBlocks() ? exitStatus : 1;
}

} // namespace
} // namespace wqv

int main (int argc, char* argv[])
{
    return wqv::runDemo (argc, argv);
}
