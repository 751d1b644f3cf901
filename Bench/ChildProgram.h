// SPDX-License-Identifier: GPL-3.0-or-later
// A program that is started to be measured.

#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/types.h>
#include <vector>

namespace wqv
{

/** How often the threads of a process have gone to sleep so far, and so how often they were woken. */
[[nodiscard]] std::uint64_t wakeUpsOf (pid_t process);

/** The most memory that a process has had so far ("resident set"). */
[[nodiscard]] double peakMegabytesOf (pid_t process);

/** Runs from construction to destruction. */
class ChildProgram
{
public:
    /** @param environment  NAME=VALUE, in place of those variables of this process */
    explicit ChildProgram (const std::filesystem::path& program, const std::vector<std::string>& environment = {});
    ~ChildProgram();

    ChildProgram (const ChildProgram&) = delete;
    ChildProgram& operator= (const ChildProgram&) = delete;

    [[nodiscard]] pid_t id() const { return process; }

private:
    pid_t process = 0;
};

} // namespace wqv
