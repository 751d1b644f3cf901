// SPDX-License-Identifier: GPL-3.0-or-later
// A made-up system with a controller, for a program in another process:  wqv-mock-host [FAULTS]  The first line is the
// environment that the program has to run in. On standard input come orders: plug, unplug.

#include "MockController.h"
#include "TestBed.h"

#include <cstdlib>
#include <iostream>
#include <string>

namespace wqv
{
namespace
{

// As CTest has it for a test that was skipped.
constexpr int skipped = 77;

void say (const std::string& line)
{
    // In one piece, since the controller's thread speaks too.
    std::cout << line + "\n" << std::flush;
}

int host (const FaultScript& faults)
{
    TestBed bed;
    MockController mock (bed, UsbHid { .reportDescriptor = controllersReportDescriptor() }, faults);

    mock.controller.setLog ([] (const std::string& line) { say ("host: " + line); });
    say (TestBed::environment());

    for (std::string order; std::getline (std::cin, order);)
        if (order == "plug")
            mock.plugIn();
        else
            mock.unplug();

    return EXIT_SUCCESS;
}

} // namespace
} // namespace wqv

int main (int argc, char* argv[])
{
    wqv::TestBed::enter (argv);

    if (! wqv::TestBed::isPossible())
    {
        std::cerr << "host: the emulation of udev and hidraw, libumockdev-preload, is not installed\n";
        return wqv::skipped;
    }

    const auto faults = wqv::parseFaultScript (argc > 1 ? argv[1] : "");
    return faults ? wqv::host (*faults) : EXIT_FAILURE;
}
