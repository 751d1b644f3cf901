// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-controller: a virtual WQV-KRV20 on a USB device port of this machine.

#include "BoardOptions.h"
#include "Console.h"
#include "ControllerBoard.h"
#include "ControllerReport.h"
#include "ReceivedBlocks.h"
#include "StandardStreams.h"
#include "UsbGadget.h"
#include "UsbPort.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <sys/signalfd.h>
#include <unistd.h>

namespace wqv
{
namespace
{

/** Blocks the signals that end the program, from here on. @returns where they are read */
int openSignals()
{
    // Who reads the output may go away; the gadget has to be removed all the same.
    std::signal (SIGPIPE, SIG_IGN);

    sigset_t signals;
    sigemptyset (&signals);

    for (const auto number : { SIGTERM, SIGINT, SIGHUP })
        sigaddset (&signals, number);

    pthread_sigmask (SIG_BLOCK, &signals, nullptr);
    return signalfd (-1, &signals, SFD_CLOEXEC);
}

/** Serves the host until the end. @returns what went wrong, for people */
std::string serve (const BoardOptions& options, SimulatedController& controller)
{
    const auto signals = openSignals();
    UsbPort port;

    if (auto problem = port.open ("/sys/class/udc", options.port); ! problem.empty())
        return problem;

    UsbGadget gadget ("/sys/kernel/config/usb_gadget", port.name(), options.gadget);

    if (auto problem = gadget.create(); ! problem.empty())
        return problem;

    print (STDOUT_FILENO, "a virtual WQV-KRV20 on the port " + port.name());
    ControllerBoard board (gadget, controller, options.gadget.reportLengths.size(), options.controllerInterface);
    return board.run (signals, options.controller.isAbsent);
}

int runController (int argc, const char* const* argv)
{
    int exitStatus = 0;
    const auto options = readBoardOptions (argc, argv, exitStatus);

    if (! options)
        return exitStatus;

    ControllerReport report;
    auto controller = makeController (options->controller);
    controller.leaveBusToRestart();

    const auto say = [&exitStatus] (const std::string& problem)
    {
        if (problem.empty())
            return;

        print (STDERR_FILENO, problem);
        exitStatus = 1;
    };

    std::string problem;
    const auto recorded = makeRecordedController (options->controller, problem);
    auto& chosen = recorded != nullptr ? static_cast<SimulatedController&> (*recorded) : controller;
    chosen.setLog (
        [&report] (const std::string& line)
        {
            report.addStep (line);
            print (STDOUT_FILENO, line);
        });

    say (problem.empty() ? serve (*options, chosen) : problem);

    if (recorded != nullptr)
        say (recorded->firstDifference());

    say (writeReceivedBlocks (controller, options->controller.receivedFolder));

    if (! options->reportFile.empty())
        say (report.write (controller, options->reportFile));

    return exitStatus;
}

} // namespace
} // namespace wqv

int main (int argc, char** argv)
{
    wqv::openStandardStreams();

    try
    {
        return wqv::runController (argc, argv);
    }
    catch (const std::exception& error)
    {
        std::fprintf (stderr, "wqv-controller: %s\n", error.what());
        return 1;
    }
}
