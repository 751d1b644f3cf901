// SPDX-License-Identifier: GPL-3.0-or-later
// wqv-package as people run it: exit codes, words, and what it leaves in the folder.

#include "GoldenPackage.h"
#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cstdio>
#include <set>
#include <tuple>

#include <sys/wait.h>

namespace wqv
{
namespace
{

using Json = nlohmann::json;

class Tool : public testing::Test
{
protected:
    Tool()
    {
        folder.write ("main.bin", mainData);
        folder.write ("none.bin", {});
        folder.write ("good.upd", goldenPackage);
        std::filesystem::resize_file (folder.write ("large.bin", {}), sizeLimit);
    }

    struct Result
    {
        int code;
        std::string output; ///< both streams
    };

    /** Runs the tool in the folder, through a shell. */
    Result run (const std::string& arguments, const std::string& before = {}) const
    {
        const auto line = "cd '" + folder.path().string() + "' && " + before + " timeout 60 '" WQV_PACKAGE_TOOL "' "
                          + arguments + " 2>&1";
        auto* pipe = popen (line.c_str(), "r");
        Result result { -1, {} };

        for (int c = pipe != nullptr ? std::fgetc (pipe) : EOF; c != EOF; c = std::fgetc (pipe))
            result.output += static_cast<char> (c);

        if (const auto status = pipe != nullptr ? pclose (pipe) : -1; WIFEXITED (status))
            result.code = WEXITSTATUS (status);

        return result;
    }

    std::set<std::string> names() const
    {
        std::set<std::string> found;

        for (const auto& entry : std::filesystem::directory_iterator (folder.path()))
            found.insert (entry.path().filename().string() + (entry.is_symlink() ? " -> " : ""));

        return found;
    }

    const TemporaryFolder folder;
    const Bytes mainData = Bytes (24001, 0x5A);
};

TEST_F (Tool, saysWhatIsWrongAndLeavesNothingBehind)
{
    const std::string version = "create --version 1.05";
    const std::string oneBlock = " --block id=0001,file=main.bin -o new.upd";
    std::string seventeen;

    for (int i = 0; i < 17; ++i)
        seventeen += " --block id=0001,file=main.bin";

    auto bad = goldenPackage;
    bad[4] = 0xFF;
    folder.write ("format.upd", sealed (std::span (bad).first (128)));
    std::filesystem::create_symlink ("loop", folder.path ("loop"));
    std::filesystem::create_symlink ("main.bin/new.upd", folder.path ("nowhere"));
    folder.write ("zero.upd", writePackage ({ .version = 0, .blocks = goldenDescription().blocks }));

    const std::tuple<std::string, int, std::string> cases[] {
        { "dance '\x1B'", 2, "\\x1B dance\nRun with --help" },
        { "create --version 10.00" + oneBlock, 2, "9.99" },
        { "create --version 0.00" + oneBlock, 2, "above 0" },
        { "create --version 1.5" + oneBlock, 2, "'1.5' is not a version" },
        { version + " --block id=00g1,file=main.bin -o new.upd", 2, "'00g1' is not four hexadecimal digits" },
        { version + " --block id=0001,file=main.bin,key-index=256 -o new.upd", 2, "'256' is not a number" },
        { version + seventeen + " -o new.upd", 2, "17 blocks are too many" },
        { version + " --block id=0001,file=gone.bin -o new.upd", 1, "block 1, gone.bin" },
        { version + " --block id=0001,file=large.bin -o new.upd", 1, "block 1 is too large: 16777216" },
        { version + " --block id=0001,file=none.bin -o new.upd", 1, "no data" },
        { version + " --block id=0001,file=main.bin -o main.bin", 1, "never overwritten" },
        { version + " --block id=0001,file=main.bin -o loop", 1, "loop: cannot be written: Too many levels" },
        { version + " --block id=0001,file=main.bin -o nowhere", 1, "nowhere: cannot be written: Not a directory" },
        { "verify good.upd", 0, "version 1.05, blocks: 3, to be written: 2, bytes in all: 12" },
        { "verify format.upd", 1, "format version is not 0100 (at byte 4)" },
        { "verify zero.upd", 1, "the version is 0.00" },
        { "verify good.upd >/dev/full", 1, "" },
        { "verify '\x1B\\\x7F\n~\xC2\xA0\u20AC\U0001F3A7'",
          1,
          ": \\x1B\\x5C\\x7F\\x0A~\xC2\xA0\u20AC\U0001F3A7: the file" },
        { "verify '\xC2\x9F\xE2\x82\xC3 \xED\xA0\x80 \xE0\x9F\xBF'",
          1,
          "\\xC2\\x9F\\xE2\\x82\\xC3 \\xED\\xA0\\x80 \\xE0\\x9F\\xBF" },
        { "verify '\xF4\x90\x80\x80 \xF0\x8F\xBF\xBF \x80\xF8\x80\x80\x80\xC2'",
          1,
          "\\xF4\\x90\\x80\\x80 \\xF0\\x8F\\xBF\\xBF \\x80\\xF8\\x80\\x80\\x80\\xC2" },
        { "extract format.upd out", 1, "format version" },
    };

    const auto before = names();

    for (const auto& [arguments, code, phrase] : cases)
    {
        const auto result = run (arguments);
        EXPECT_EQ (result.code, code) << arguments << '\n' << result.output;
        EXPECT_NE (result.output.find (phrase), std::string::npos) << arguments << '\n' << result.output;
        EXPECT_EQ (names(), before) << arguments;
        EXPECT_EQ (folder.read ("main.bin"), mainData);
    }
}

TEST_F (Tool, roundTrip)
{
    const auto made = run ("create --version 2.07 --block id=0a0B,file=main.bin,scramble,seed=0xFFFFFFFF,key-index=255"
                           " --block id=0002,file=none.bin,seed=7 --block id=0002,file=main.bin,disabled -o new.upd");
    ASSERT_EQ (made.code, 0) << made.output;
    EXPECT_EQ (run ("verify new.upd").code, 0);

    const auto json = Json::parse (run ("inspect --json new.upd").output);
    EXPECT_EQ (json["version"], 207);
    EXPECT_EQ (json["totalSize"], 48002);
    EXPECT_EQ (json["enabledSize"], 24001);
    EXPECT_EQ (json["blocks"][0]["keyIndex"], 255);

    ASSERT_EQ (run ("extract new.upd a/b").code, 0);
    EXPECT_EQ (folder.read ("a/b/block-01-0A0B.bin"), mainData);
    EXPECT_TRUE (std::filesystem::is_empty (folder.path ("a/b/block-02-0002.bin")));
    EXPECT_EQ (folder.read ("a/b/block-03-0002.bin"), mainData);
}

TEST_F (Tool, replacesAFileWholeOrNotAtAll)
{
    const auto before = names();

    // The disk is full, so to speak: files end after a few kilobytes.
    const auto failed =
        run ("create --version 1.05 --block id=0001,file=main.bin -o good.upd", "trap '' XFSZ && ulimit -f 8 &&");
    EXPECT_EQ (failed.code, 1);
    EXPECT_EQ (folder.read ("good.upd"), Bytes (goldenPackage.begin(), goldenPackage.end()));

    EXPECT_EQ (run ("create --version 1.05 --block id=0001,file=main.bin -o good.upd").code, 0);
    EXPECT_EQ (folder.read ("good.upd"),
               writePackage ({ .version = 105, .blocks = { { .id = 1, .data = mainData } } }));
    EXPECT_EQ (names(), before);
}

TEST_F (Tool, followsTheLinkThatItIsToldToWriteAndNoneInADirectory)
{
    using std::filesystem::perms;
    const std::string create = "create --version 1.05 --block id=0001,file=main.bin -o ";
    const auto made = writePackage ({ .version = 105, .blocks = { { .id = 1, .data = mainData } } });
    const auto modeOf = [this] (const char* name)
    { return std::filesystem::status (folder.path (name)).permissions(); };

    std::filesystem::create_directory (folder.path ("out"));
    std::filesystem::create_symlink ("../main.bin", folder.path ("out/block-01-0001.bin"));
    std::filesystem::create_symlink ("out/new.upd", folder.path ("second"));
    std::filesystem::create_symlink ("second", folder.path ("first"));
    std::filesystem::permissions (folder.write ("out/block-02-1A2F.bin", {}), perms { 0606 });
    const auto before = names();

    EXPECT_EQ (run ("extract good.upd out").code, 0);
    EXPECT_EQ (folder.read ("main.bin"), mainData);
    EXPECT_EQ (folder.read ("out/block-01-0001.bin"), (Bytes { 'a', 'b', 'c' }));
    EXPECT_EQ (folder.read ("out/block-02-1A2F.bin").size(), 5u);
    EXPECT_EQ (modeOf ("out/block-02-1A2F.bin"), perms { 0606 });

    // First there is nothing behind the links, then there is.
    EXPECT_EQ (run (create + "first").code, 0);
    EXPECT_EQ (folder.read ("out/new.upd"), made);
    std::filesystem::permissions (folder.write ("out/new.upd", {}), perms { 0640 });
    EXPECT_EQ (run (create + "first").code, 0);
    EXPECT_EQ (folder.read ("out/new.upd"), made);
    EXPECT_EQ (modeOf ("out/new.upd"), perms { 0640 });
    EXPECT_EQ (names(), before);
}

} // namespace
} // namespace wqv
