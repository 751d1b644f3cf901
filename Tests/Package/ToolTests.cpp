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
        std::filesystem::resize_file (folder.write ("half.bin", {}), sizeLimit / 2);
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
    const std::string create = "create --version 1.05 -o ";
    const std::string version = create + "new.upd";
    const std::string good = " --block id=0001,file=main.bin";
    const std::string half = " --block id=0001,file=half.bin";
    const std::string none = " --block id=0001,file=none.bin";
    const std::string alias = " --block id=0002,file=alias.bin";
    const std::string parts = " is none of id=DIGITS, file=NAME, disabled, scramble, seed=NUMBER, key-index=NUMBER";
    std::string seventeen;

    for (int i = 0; i < 17; ++i)
        seventeen += good;

    const auto damaged = [this] (const std::string& name, std::size_t offset, std::uint8_t value)
    {
        auto bytes = goldenPackage;
        bytes[offset] = value;
        folder.write (name, sealed (std::span (bytes).first (128)));
    };

    damaged ("format.upd", 4, 0xFF);
    damaged ("product.upd", 19, '1');
    damaged ("count.upd", 24, 17);
    damaged ("crc.upd", 94, 0);
    damaged ("beyond.upd", 119, 1);
    damaged ("none.upd", 24, 0);
    damaged ("ten.upd", 21, '0' + 100);
    std::filesystem::create_directory (folder.path ("folder"));
    std::filesystem::create_symlink ("loop", folder.path ("loop"));
    std::filesystem::create_symlink ("main.bin/new.upd", folder.path ("nowhere"));
    std::filesystem::create_symlink ("main.bin", folder.path ("alias.bin"));
    std::filesystem::create_hard_link (folder.path ("main.bin"), folder.path ("same.bin"));
    std::filesystem::create_symlink ("../good.upd", folder.path ("folder/block-01-0001.bin"));
    auto negative = writePackage ({ .version = 1, .blocks = { { .data = mainData } } });
    negative[20] = '/';
    folder.write ("negative.upd", sealed (std::span (negative).first (negative.size() - 4)));
    folder.write ("zero.upd", writePackage ({ .version = 0, .blocks = goldenDescription().blocks }));

    const std::tuple<std::string, int, std::string> cases[] {
        { "", 2, "A subcommand is required" },
        { "--help", 0, "create" },
        { "--version", 0, "wqv-package " },
        { "dance '\x1B\u200B'", 2, "\\x1B\\xE2\\x80\\x8B dance\nRun with --help" },
        { "create" + good + " -o new.upd", 2, "--version is required" },
        { "create --version 1.05" + good, 2, "--output is required" },
        { version, 2, "--block is required" },
        { version + good + " more", 2, "more" },
        { "create --version 10.00 -o new.upd" + good, 2, "the version is beyond 9.99" },
        { "create --version 42949673.00 -o new.upd" + good, 2, "the version is beyond 9.99" },
        { "create --version 0.00 -o new.upd" + good, 2, "above 0" },
        { "create --version 1.5 -o new.upd" + good, 2, "--version: '1.5' is not a version such as 1.05" },
        { "create --version 1.005 -o new.upd" + good, 2, "'1.005' is not a version" },
        { "create --version .05 -o new.upd" + good, 2, "'.05' is not a version" },
        { "create --version 1.0x -o new.upd" + good, 2, "'1.0x' is not a version" },
        { version + " --block id=00g1,file=main.bin", 2, "--block 1: id '00g1' is not four hexadecimal digits" },
        { version + " --block id=001,file=main.bin", 2, "id '001' is not four hexadecimal digits" },
        { version + " --block id=00001,file=main.bin", 2, "id '00001' is not four hexadecimal digits" },
        { version + good + good + ",key-index=256", 2, "--block 2: key-index '256' is not a number from 0 to 255" },
        { version + good + ",seed=4294967296", 2, "seed '4294967296' is not a number from 0 to 4294967295" },
        { version + good + ",seed=0x", 2, "seed '0x' is not a number" },
        { version + good + ",seed=1f", 2, "seed '1f' is not a number" },
        { version + good + ",seed", 2, "'seed'" + parts },
        { version + good + ",key-index", 2, "'key-index'" + parts },
        { version + good + ",", 2, "''" + parts },
        { version + good + ",disabled=1", 2, "'disabled=1'" + parts },
        { version + good + ",scramble,scramble", 2, "scramble is given twice" },
        { version + good + ",id=0002", 2, "id is given twice" },
        { version + " --block id,file=main.bin", 2, "'id'" + parts },
        { version + " --block id=0001,file=", 2, "'file='" + parts },
        { version + " --block id=0001", 2, "file= is missing" },
        { version + " --block file=main.bin", 2, "id= is missing" },
        { version + seventeen, 2, "17 blocks are too many: a package holds at most 16" },
        { version + good + " --block id=0001,file=gone.bin", 1, "block 2, gone.bin: the file cannot be opened\n" },
        { version + good + " --block id=0001,file=large.bin", 1, "block 2 is too large: 16777216 bytes, where" },
        { version + half + half, 1, "too large together: 16777216 bytes, where the protocol's 24-bit total" },
        { version + none, 1, "the blocks hold no data: their total size must be above 0" },
        { create + "same.bin" + good + alias, 1, "same.bin: is the input file main.bin, which is never overwritten" },
        { create + "main.bin" + none + alias, 1, "main.bin: is the input file alias.bin, which is never overwritten" },
        { create + "folder" + good, 1, "folder: cannot be replaced: it is not a regular file" },
        { create + "gone/new.upd" + good, 1, "gone/new.upd: cannot be written: No such file" },
        { create + "loop" + good, 1, "loop: cannot be written: Too many levels" },
        { create + "nowhere" + good, 1, "nowhere: cannot be written: Not a directory" },
        { "verify good.upd", 0, "good.upd: version 1.05, blocks: 3, to be written: 2, bytes in all: 12\n" },
        { "verify folder", 1, "folder: it is not a regular file\n" },
        { "verify none.bin", 1, "none.bin: the file ends before its 28-byte header does (at byte 0)\n" },
        { "verify main.bin", 1, "main.bin: the CRC-32 at the end does not match the file (at byte 23997)\n" },
        { "verify format.upd", 1, "the format version is not 0100 (at byte 4)\n" },
        { "verify product.upd", 1, "the product code is not WQVKRV20 (at byte 12)\n" },
        { "verify count.upd", 1, "the header counts more than 16 blocks (at byte 24)\n" },
        { "verify crc.upd", 1, "crc.upd: block 2: the block's CRC-16 does not match its data (at byte 94)\n" },
        { "verify beyond.upd", 1, "block 3: the block reaches beyond the end of the file (at byte 96)\n" },
        { "verify none.upd", 1, "none.upd: the blocks hold no data: their total size must be above 0\n" },
        { "inspect ten.upd", 0, "version:        11.05 (" },
        { "verify zero.upd", 1, "zero.upd: the version is 0.00: it must be above 0\n" },
        { "verify negative.upd", 1, "negative.upd: the version is -99/100: it must be above 0\n" },
        { "verify good.upd >/dev/full", 1, "" },
        { "verify '\x1F\\\x7F\n~\xC2\xA0\u0800\uD7FF\uE000\U00010000\U0010FFFF'",
          1,
          ": \\x1F\\x5C\\x7F\\x0A~\xC2\xA0\u0800\uD7FF\uE000\U00010000\U0010FFFF: the file" },
        { "verify '\xC2\x9F\xE2\x82\xC3 \xED\xBF\xBF \xE0\x9F\xBF'",
          1,
          R"(\xC2\x9F\xE2\x82\xC3 \xED\xBF\xBF \xE0\x9F\xBF)" },
        { "verify '\xF4\x90\x80\x80 \xF0\x8F\xBF\xBF \xBF\xBF\xF8\xBF\xBF\xBF\xC2'",
          1,
          R"(\xF4\x90\x80\x80 \xF0\x8F\xBF\xBF \xBF\xBF\xF8\xBF\xBF\xBF\xC2)" },
        { "inspect gone.upd", 1, "gone.upd: the file cannot be opened\n" },
        { "extract crc.upd out", 1, "crc.upd: block 2: the block's CRC-16" },
        { "extract good.upd main.bin", 1, "main.bin: cannot be made: Not a directory" },
        { "extract folder/block-01-0001.bin folder", 1, "which is never overwritten" },
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

TEST_F (Tool, inspectsWhateverCanBeRead)
{
    auto body = Bytes (goldenPackage.begin(), goldenPackage.end() - 4);
    folder.write ("two.upd", std::span (body).first (2));
    folder.write ("four.upd", std::span (body).first (4));
    folder.write ("short.upd", std::span (body).first (27));
    folder.write ("cut.upd", sealed (std::span (body).first (28 + 19)));
    body.push_back ('1');
    folder.write ("surplus.upd", sealed (body));

    body = { 0x1B, '\\', '~', 0x7F };
    body.insert (body.end(), goldenPackage.begin() + 4, goldenPackage.end() - 4);
    body[20] = body[21] = body[22] = '/';
    body[24] = 4;
    body[84] ^= 1;
    body.insert (body.end(), { 0xEF, 0xCD, 0xAB, 0x89, 0, 0, 0, 0, '0', '0', 'f', 'g', 'y', 2, 200, 0, 0, 0 });
    body.insert (body.end(), { 0, 0, 4, 3, 2, 1 });
    folder.write ("bad.upd", body);

    const std::tuple<std::string, std::string, std::string> cases[] {
        { "two",
          R"(file size:      2 bytes
CRC-32:         cannot be read
WRONG: the file ends before its 28-byte header does (at byte 2)
The program does not offer this package: the file ends before its 28-byte header does (at byte 2)
)",
          R"json({ "/crc32": null, "/blocks": [] })json" },
        { "surplus",
          "12 bytes in all, 8 to be written\nsurplus:        1 bytes behind the last block\nblock      offset",
          R"json({ "/surplus": 1, "/crc32": { "stored": "0xF69E88F7", "calculated": "0xF69E88F7", "right": true } })json" },
        { "bad",
          R"(file size:      152 bytes
CRC-32:         04030201 (WRONG: 949298FD)
magic:          "\x1B\x5C~\x7F"
format version: "0100"
product code:   "WQVKRV20"
version:        -111/100 ("///\x00")
block count:    4
sizes:          12 bytes in all, 8 to be written
block      offset  id    write  scrambled  seed      key index        size  CRC-16
    1          28  0001  yes    no         00000000          0           3  9DD6 (right)
    2          60  1A2F  yes    yes        12345678         42           5  CBD6 (WRONG: B148)
    3          96  00FF  no     no         00000000          0           4  0D03 (right)
    4         128  00F0  no     yes        89ABCDEF        200    16909060  cannot be read
WRONG: the CRC-32 at the end does not match the file (at byte 148)
WRONG: the file does not begin with "UPD " (at byte 0)
WRONG: block 2: the block's CRC-16 does not match its data (at byte 94)
WRONG: block 4: the block reaches beyond the end of the file (at byte 128)
The program does not offer this package: the CRC-32 at the end does not match the file (at byte 148)
)",
          R"json({ "/fileSize": 152, "/magic": "\\x1B\\x5C~\\x7F", "/version": -111, "/surplus": 0, "/offered": false,
               "/formatVersion": "0100", "/productCode": "WQVKRV20", "/versionDigits": "///\\x00", "/blockCount": 4,
               "/crc32": { "stored": "0x04030201", "calculated": "0x949298FD", "right": false },
               "/blocks/1": { "number": 2, "offset": 60, "id": "1A2F", "enabled": true, "scrambled": true,
                 "seed": "0x12345678", "keyIndex": 42, "size": 5,
                 "crc16": { "stored": "0xCBD6", "calculated": "0xB148", "right": false } },
               "/blocks/2/enabled": false, "/blocks/3/scrambled": true, "/blocks/3/crc16": null,
               "/faults/1/block": null, "/faults/1/offset": 0,
               "/faults/2": { "what": "the block's CRC-16 does not match its data", "block": 2, "offset": 94 },
               "/reason": "the CRC-32 at the end does not match the file (at byte 148)" })json" },
        { "four", "CRC-32:         55504420 (WRONG: FFFFFFFF)\n", "{}" },
        { "short", "CRC-32:         00030000 (WRONG: A7EC86F8)\nWRONG: the file ends before", "{}" },
        { "cut", "CRC-16\nWRONG: block 1: the block reaches beyond the end of the file (at byte 28)\n", "{}" },
        { "good", "8 to be written\nblock      offset", R"json({ "/offered": true, "/reason": null })json" },
        { "good", "The program offers this package.\n", R"json({ "/faults": [] })json" },
    };

    for (const auto& [name, text, json] : cases)
    {
        const auto printed = run ("inspect " + name + ".upd");
        const auto all = run ("inspect --json " + name + ".upd");
        const auto seen = Json::parse (all.output);
        EXPECT_EQ (printed.code + all.code, 0) << name;
        EXPECT_NE (printed.output.find (text), std::string::npos) << printed.output;

        const auto expected = Json::parse (json);

        for (const auto& [place, value] : expected.items())
            EXPECT_EQ (seen.at (Json::json_pointer (place)), value) << name << ' ' << place;
    }
}

TEST_F (Tool, roundTrip)
{
    const auto made =
        run ("create --version 2.07 --block id=0a0B,file=main.bin,scramble,seed=0xFFFFFFFF,key-index=255"
             " --block id=0002,file=none.bin,seed=0X1f,key-index=9 --block id=0002,file=main.bin,disabled -o new.upd");
    ASSERT_EQ (made.code, 0) << made.output;
    EXPECT_EQ (run ("verify new.upd").code, 0);

    const auto json = Json::parse (run ("inspect --json new.upd").output);
    EXPECT_EQ (json["version"], 207);
    EXPECT_EQ (json["totalSize"], 48002);
    EXPECT_EQ (json["enabledSize"], 24001);
    EXPECT_EQ (json["blocks"][0]["keyIndex"], 255);
    EXPECT_EQ (json["blocks"][0]["seed"], "0xFFFFFFFF");
    EXPECT_EQ (json["blocks"][0]["scrambled"], true);
    EXPECT_EQ (json["blocks"][1]["seed"], "0x0000001F");
    EXPECT_EQ (json["blocks"][1]["keyIndex"], 9);

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

    // The first name for the new file is taken, by the same process as it were.
    EXPECT_EQ (run ("create --version 1.05 --block id=0001,file=main.bin -o good.upd",
                    "taken() { touch .wqv-package-$$-0; shift 2; exec \"$@\"; }; taken")
                   .code,
               0);
    EXPECT_EQ (folder.read ("good.upd"),
               writePackage ({ .version = 105, .blocks = { { .id = 1, .data = mainData } } }));
    EXPECT_EQ (names().size(), before.size() + 1);
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
    std::filesystem::create_symlink ("new.upd", folder.path ("out/second"));
    std::filesystem::create_symlink ("out/second", folder.path ("first"));
    std::filesystem::permissions (folder.write ("out/block-02-1A2F.bin", {}), perms { 0606 });
    const auto before = names();

    // There is nowhere else to write but in the directory itself.
    EXPECT_EQ (run ("extract '" + folder.path ("good.upd").string() + "' '" + folder.path ("out").string() + "'",
                    "mkdir gone && cd gone && rmdir ../gone &&")
                   .code,
               0);
    EXPECT_EQ (folder.read ("main.bin"), mainData);
    EXPECT_EQ (folder.read ("out/block-01-0001.bin"), (Bytes { 'a', 'b', 'c' }));
    EXPECT_EQ (folder.read ("out/block-02-1A2F.bin").size(), 5u);
    EXPECT_EQ (modeOf ("out/block-02-1A2F.bin"), perms { 0606 });
    EXPECT_EQ (modeOf ("out/block-01-0001.bin"), modeOf ("good.upd"));

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
