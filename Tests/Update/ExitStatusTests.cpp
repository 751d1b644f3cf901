// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-update as people run it, where no controller is plugged in.

#include "UpdaterFixture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <tuple>

#include <sys/wait.h>

namespace wqv
{
namespace
{

TEST (ExitStatus, ofTheExecutableAndItsWords)
{
    const TemporaryFolder folder;
    folder.write ("good.upd", writePackage (smallPackage()));
    folder.write ("zero.upd", writePackage (smallPackage (0)));

    const std::tuple<const char*, int, const char*> cases[] {
        { "--yes --package good.upd", 3, "no controller: none is plugged in" },
        { "--yes --package good.upd --json", 3, R"({"event":"outcome","result":"noController")" },
        { "--list", 3, "" },
        { "--yes --package none.upd", 4, "none.upd: the file cannot be opened" },
        { "--yes --package zero.upd --repeat --json", 4, "the version is 0.00: it must be above 0" },
        { "--package good.upd", 2, "no terminal" },
        { "--list --repeat", 2, "excludes" },
        { "--yes --package good.upd --trace none/trace", 2, "cannot write none/trace" },
        { "--yes --package good.upd --trace ./good.upd", 2, "cannot write ./good.upd" },
        { "--yes --package good.upd --trace /dev/null", 2, "cannot write /dev/null" },
        { "--yes rubbish", 2, "rubbish" },
        { "--help", 0, "4 no fit update package" },
    };

    for (const auto& [arguments, status, words] : cases)
    {
        SCOPED_TRACE (arguments);
        const auto line =
            "cd '" + folder.path().string() + "' && timeout 60 '" WQV_UPDATE_TOOL "' " + arguments + " </dev/null 2>&1";
        auto* const pipe = popen (line.c_str(), "r");
        std::string output;

        for (int c = std::fgetc (pipe); c != EOF; c = std::fgetc (pipe))
            output += static_cast<char> (c);

        const auto ended = pclose (pipe);
        EXPECT_TRUE (WIFEXITED (ended) && WEXITSTATUS (ended) == status) << ended << output;
        EXPECT_NE (output.find (words), std::string::npos) << output;
    }
}

} // namespace
} // namespace wqv
