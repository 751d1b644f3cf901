// SPDX-License-Identifier: GPL-3.0-or-later
// How a measured program is started, looked at and ended.

#include "ChildProgram.h"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <spawn.h>
#include <stdexcept>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>

namespace wqv
{

namespace
{

/** A number in one of the kernel's files about a process; 0 if it is not there. */
std::uint64_t numberIn (const std::filesystem::path& status, std::string_view label)
{
    std::ifstream file (status);

    for (std::string line; std::getline (file, line);)
        if (line.starts_with (label))
            return std::stoull (line.substr (label.size()));

    return 0;
}

} // namespace

std::uint64_t wakeUpsOf (pid_t process)
{
    std::uint64_t sum = 0;

    for (const auto& task : std::filesystem::directory_iterator ("/proc/" + std::to_string (process) + "/task"))
        sum += numberIn (task.path() / "status", "voluntary_ctxt_switches:");

    return sum;
}

double peakMegabytesOf (pid_t process)
{
    return static_cast<double> (numberIn ("/proc/" + std::to_string (process) + "/status", "VmHWM:")) * 1024 / 1e6;
}

ChildProgram::ChildProgram (const std::filesystem::path& program, const std::vector<std::string>& environment)
{
    auto variables = environment;

    for (auto* const* entry = environ; *entry != nullptr; ++entry)
    {
        const std::string variable (*entry);
        const auto name = variable.substr (0, variable.find ('=') + 1);

        if (std::ranges::none_of (environment, [&name] (const auto& given) { return given.starts_with (name); }))
            variables.push_back (variable);
    }

    std::vector<char*> pointers;
    pointers.reserve (variables.size() + 1);

    for (auto& variable : variables)
        pointers.push_back (variable.data());

    pointers.push_back (nullptr);

    auto path = program.string();
    char* arguments[] { path.data(), nullptr };

    if (posix_spawn (&process, path.c_str(), nullptr, nullptr, arguments, pointers.data()) != 0)
        throw std::runtime_error ("cannot start " + path);
}

ChildProgram::~ChildProgram()
{
    kill (process, SIGTERM);
    waitpid (process, nullptr, 0);
}

} // namespace wqv
