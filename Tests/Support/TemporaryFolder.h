// SPDX-License-Identifier: GPL-3.0-or-later
// A folder for one test's files.

#pragma once

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
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
        auto name = (std::filesystem::temp_directory_path() / "wqv-test-XXXXXX").string();

        if (mkdtemp (name.data()) == nullptr)
            throw std::runtime_error ("no temporary folder");

        folder = name;
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
