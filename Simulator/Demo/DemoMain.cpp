// SPDX-License-Identifier: GPL-3.0-or-later
// The demo: the same window and engine as the program's, and a controller that tells on the console what it goes through.

#include "Application.h"
#include "Complaint.h"
#include "ControllerOptions.h"
#include "JuceVersions.h"
#include "ReceivedBlocks.h"
#include "SimulatedHidService.h"
#include "StandardStreams.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <memory>

namespace wqv
{
namespace
{

/** The virtual controller, and what the command line says of it. */
class Demo
{
public:
    /** @param recordedToUse  in the place of the virtual one; null for none */
    Demo (ControllerOptions optionsToUse, std::unique_ptr<TracedController> recordedToUse)
        : options (std::move (optionsToUse)),
          controller (makeController (options)),
          recorded (std::move (recordedToUse))
    {
        std::cout << std::unitbuf; // each line at once, for who follows it
        chosen().setLog ([] (const std::string& line) { std::cout << "demo: " << line << '\n'; });
        std::cout << "demo: a virtual WQV-KRV20; nothing is written to any device\n";
    }

    std::unique_ptr<HidService> makeHidService()
    {
        auto service = std::make_unique<SimulatedHidService>();

        if (! options.isAbsent)
        {
            chosen().happens ({ .kind = SimulatedController::Event::Kind::plugIn });
            service->plugIn (&chosen());
        }

        return service;
    }

    /** Ends it. @returns whether all was written that was asked for, or each request was the recorded one */
    [[nodiscard]] bool end() const
    {
        const auto problem = recorded != nullptr ? recorded->firstDifference()
                                                 : writeReceivedBlocks (controller, options.receivedFolder);

        if (! problem.empty())
            complain (problem);

        return problem.empty();
    }

private:
    [[nodiscard]] SimulatedController& chosen()
    {
        return recorded != nullptr ? static_cast<SimulatedController&> (*recorded) : controller;
    }

    const ControllerOptions options;
    VirtualController controller;
    const std::unique_ptr<TracedController> recorded;
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
    CLI::App app ("The firmware updater with a virtual controller: nothing is written to any device.");
    app.set_version_flag ("--version", WQV_PROJECT_VERSION);
    ControllerOptions options;
    addControllerOptions (app, options);

    if (const auto status = parseCommandLine (app, argc, argv))
        return *status;

    std::string problem;
    auto recorded = makeRecordedController (options, problem);

    if (! problem.empty())
    {
        complain (problem);
        return 1;
    }

    theDemo() = std::make_unique<Demo> (std::move (options), std::move (recorded));
    const auto status = runApplication (&createApplication, argc, argv);

    return theDemo()->end() ? status : 1;
}

} // namespace
} // namespace wqv

int main (int argc, char* argv[])
{
    wqv::openStandardStreams();

    try
    {
        return wqv::runDemo (argc, argv);
    }
    catch (const std::exception& error)
    {
        wqv::complain (error.what());
        return 1;
    }
}
