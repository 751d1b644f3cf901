// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-update: updates the firmware of a controller, without a window.

#include "EscapedText.h"
#include "HidUtil.h"
#include "Options.h"
#include "Output.h"
#include "Platform.h"
#include "Session.h"
#include "StandardStreams.h"
#include "TracedHidService.h"

#include <juce_events/juce_events.h>

#include <exception>
#include <fstream>
#include <iostream>
#include <system_error>
#include <thread>
#include <utility>

namespace wqv
{
namespace
{

constexpr const char* name = "wqv-update";

/** The message loop must go on while the user thinks. If the program ends meanwhile, the thread ends with the process. */
void readAnswer (std::function<void (const std::string&)> callback)
{
    std::thread (
        [callback = std::move (callback)]
        {
            std::string line;
            std::getline (std::cin, line);
            juce::MessageManager::callAsync ([callback, line] { callback (line); });
        })
        .detach();
}

/** Nobody: to list devices, none is talked to. */
struct Nobody final : HidHandler
{
    void removalCallBack() override {}
    void matchingCallBack() override {}
    void inputCallBack() override {}
};

/** Lets the transport choose a device, and shows what it made of each. */
ExitStatus list (DeviceRoster& roster, Reporter& reporter)
{
    constexpr std::int32_t controllersMode = 1;
    Nobody nobody;
    HidUtil transport (roster);
    const auto isFound = transport.initialize (nobody, controllersMode) && transport.deviceMatching();

    reporter.devices (roster.entries(), isFound ? roster.chosen() : std::nullopt);
    return isFound ? ExitStatus::complete : ExitStatus::noController;
}

ExitStatus update (const Options& options, const Platform& platform, DeviceRoster& roster, Reporter& reporter)
{
    Session session (
        roster,
        reporter,
        { .package = options.package,
          .asks = ! options.yes,
          .waits = options.wait,
          .repeats = options.repeat,
          .keepAwake = [&platform] { return platform.keepAwake (name, "Updating the firmware of the WQV-KRV20"); },
          .readAnswer = readAnswer,
          .onEnd = [] { juce::MessageManager::getInstance()->stopDispatchLoop(); } });

    const auto endRequests = platform.onEndRequest ([&session] { session.stop(); });
    session.start();
    juce::MessageManager::getInstance()->runDispatchLoop();
    return session.exitStatus();
}

/** The trace that was asked for, if one was. */
class Recording
{
public:
    /** The package is not written to, nor what is no plain file: a pipe or a terminal that nobody reads would hold up the
        update. */
    Recording (const Options& optionsToUse, HidService& serviceToUse) : options (optionsToUse), service (serviceToUse)
    {
        if (options.trace.empty())
            return;

        std::error_code ignored;
        const auto there = std::filesystem::status (options.trace, ignored);

        if ((std::filesystem::exists (there) && ! std::filesystem::is_regular_file (there))
            || std::filesystem::equivalent (options.trace, options.package, ignored))
            file.setstate (std::ios::failbit);
        else
            file.open (options.trace, std::ios::binary);

        writer.emplace (file);
        traced.emplace (service, *writer);
    }

    [[nodiscard]] HidService& recordedService() { return traced ? static_cast<HidService&> (*traced) : service; }

    /** Says so if not all could be written. */
    bool check (Output& output) const
    {
        if (options.trace.empty() || file.good())
            return true;

        output.printError (std::string (name) + ": cannot write " + escapedText (options.trace.string()) + "\n");
        return false;
    }

private:
    const Options& options;
    HidService& service;
    std::ofstream file;
    std::optional<TraceWriter> writer;
    std::optional<TracedHidService> traced;
};

ExitStatus run (const Options& options, const Platform& platform, Output& output)
{
    const juce::ScopedJuceInitialiser_GUI juceLives;
    const auto isTerminal = platform.isTerminal (Platform::Stream::output);
    const auto reporter = options.json ? makeJsonReporter (output) : makePlainReporter (output, isTerminal);
    const auto service = platform.makeHidService();
    Recording recording (options, *service);

    if (! recording.check (output))
        return ExitStatus::usage;

    DeviceRoster roster (recording.recordedService());
    const auto status = options.list ? list (roster, *reporter) : update (options, platform, roster, *reporter);

    recording.check (output);
    return status;
}

int runWith (Options options)
{
    const auto platform = makePlatform();

    if (options.package.empty())
        options.package = Updater::packageIn (platform->executableFile().parent_path());

    if (! options.list && ! options.yes && ! platform->isTerminal (Platform::Stream::input))
    {
        std::cerr << name << ": standard input is no terminal to ask on: give --yes to update without asking\n";
        return static_cast<int> (ExitStatus::usage);
    }

    Output output;
    const auto status = static_cast<int> (run (options, *platform, output));
    output.setExitStatus (status);
    return status;
}

} // namespace
} // namespace wqv

int main (int argumentCount, char** arguments)
{
    wqv::openStandardStreams();

    // Several threads use the streams: none is to wait for, or flush, what belongs to another.
    std::ios::sync_with_stdio (false);
    std::cin.tie (nullptr);
    std::cerr.tie (nullptr);

    try
    {
        int exitStatus = 0;
        auto options = wqv::readOptions (argumentCount, arguments, exitStatus);
        return options ? wqv::runWith (std::move (*options)) : exitStatus;
    }
    catch (const std::exception& error)
    {
        std::cerr << wqv::name << ": " << wqv::escapedText (error.what()) << '\n';
        return static_cast<int> (wqv::ExitStatus::failed);
    }
}
