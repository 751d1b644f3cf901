// SPDX-License-Identifier: GPL-3.0-or-later
// Loading a package beside reading and copying its file, and the two CRCs beside their plain definitions.

#include "Checksums.h"
#include "PackageWriter.h"
#include "TemporaryFolder.h"
#include "UpdatePackage.h"

#include <benchmark/benchmark.h>

#include <fstream>
#include <numeric>

namespace wqv
{
namespace
{

constexpr std::size_t mebibyte = 1 << 20;

std::vector<std::uint8_t> someBytes (std::size_t count)
{
    std::vector<std::uint8_t> bytes (count);
    std::iota (bytes.begin(), bytes.end(), std::uint8_t { 0 });
    return bytes;
}

/** One scrambled block of 8 MiB, as big as a package gets. */
const std::filesystem::path& packageFile()
{
    static const TemporaryFolder folder;
    static const auto file = []
    {
        PackageDescription package { .version = 105, .blocks = {} };
        package.blocks.push_back ({ .id = 1, .data = someBytes (8 * mebibyte), .scramble = true, .seed = 12345 });
        folder.write ("big.upd", writePackage (package));
        return folder.path ("big.upd");
    }();
    return file;
}

void load (benchmark::State& state)
{
    while (state.KeepRunning())
    {
        upd_info_t info;
        FirmwareBlocks blocks;

        if (checkUPD (packageFile(), info, blocks) == 0)
            state.SkipWithError ("the package is not valid");

        benchmark::DoNotOptimize (blocks);
    }
}

void readAndCopy (benchmark::State& state)
{
    while (state.KeepRunning())
    {
        std::ifstream file (packageFile(), std::ios::binary);
        std::vector<std::uint8_t> bytes (std::filesystem::file_size (packageFile()));
        file.read (reinterpret_cast<char*> (bytes.data()), static_cast<std::streamsize> (bytes.size()));
        auto copy = bytes;
        benchmark::DoNotOptimize (copy);
    }
}

/** By the table alone, a byte a step. */
std::uint32_t plainCrc32 (std::span<const std::uint8_t> data)
{
    std::uint32_t crc = 0xFFFFFFFF;

    for (const auto byte : data)
        crc = (crc << 8) ^ crcTable[(crc >> 24) ^ byte];

    return crc;
}

/** A bit a step, as the polynomial is defined. */
std::uint32_t plainCrc16 (std::span<const std::uint8_t> data)
{
    std::uint32_t crc = 0;

    for (const auto byte : data)
    {
        crc ^= std::uint32_t { byte } << 8;

        for (int bit = 0; bit < 8; ++bit)
            crc = ((crc << 1) ^ ((crc & 0x8000) != 0 ? 0x1021U : 0U)) & 0xFFFF;
    }

    return crc;
}

void checksum (benchmark::State& state, std::uint32_t (*function) (std::span<const std::uint8_t>))
{
    const auto bytes = someBytes (mebibyte);

    while (state.KeepRunning())
        benchmark::DoNotOptimize (function (bytes));
}

BENCHMARK (load)->Name ("package/load")->Unit (benchmark::kMillisecond);
BENCHMARK (readAndCopy)->Name ("package/readAndCopy")->Unit (benchmark::kMillisecond);
BENCHMARK_CAPTURE (checksum, ours, calcCRC32)->Name ("crc32/ours")->Unit (benchmark::kMicrosecond);
BENCHMARK_CAPTURE (checksum, plain, plainCrc32)->Name ("crc32/plain")->Unit (benchmark::kMicrosecond);
BENCHMARK_CAPTURE (checksum, ours, calcCRC16)->Name ("crc16/ours")->Unit (benchmark::kMicrosecond);
BENCHMARK_CAPTURE (checksum, plain, plainCrc16)->Name ("crc16/plain")->Unit (benchmark::kMicrosecond);

} // namespace
} // namespace wqv
