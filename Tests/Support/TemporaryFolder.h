// SPDX-License-Identifier: GPL-3.0-or-later
// A folder for one test's files.

#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <span>
#include <string>
#include <vector>

namespace wqv
{

/** A new empty folder, removed with all that is in it at the end. */
class TemporaryFolder
{
public:
    TemporaryFolder()
    {
        do
            folder = std::filesystem::temp_directory_path() / ("wqv-test-" + std::to_string (std::random_device {}()));
        while (! std::filesystem::create_directory (folder));
    }

    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all (folder, ignored);
    }

    TemporaryFolder (const TemporaryFolder&) = delete;
    TemporaryFolder& operator= (const TemporaryFolder&) = delete;

    [[nodiscard]] std::filesystem::path path (const std::string& name = {}) const { return folder / name; }

    std::filesystem::path write (const std::string& name, std::span<const std::uint8_t> bytes) const
    {
        std::ofstream stream (path (name), std::ios::binary);
        stream.write (reinterpret_cast<const char*> (bytes.data()), static_cast<std::streamsize> (bytes.size()));
        return path (name);
    }

    [[nodiscard]] std::vector<std::uint8_t> read (const std::string& name) const
    {
        std::ifstream stream (path (name), std::ios::binary);
        return { std::istreambuf_iterator<char> (stream), {} };
    }

private:
    std::filesystem::path folder;
};

} // namespace wqv
