// SPDX-License-Identifier: GPL-3.0-or-later
// POSIX calls: only they can refuse an existing name and wait for the disk.

#include "OutputFile.h"

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace wqv
{
namespace
{

namespace fs = std::filesystem;

/** A file that is not there yet under its own name; gone again unless it is moved there. */
class TemporaryFile
{
public:
    explicit TemporaryFile (const fs::path& directory)
    {
        const auto stem = ".wqv-package-" + std::to_string (getpid()) + "-";

        // A name can be taken by a process that died; another number is free.
        for (int number = 0; number < 100 && descriptor < 0; ++number)
        {
            path = directory / (stem + std::to_string (number));
            descriptor = open (path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);

            if (descriptor < 0 && errno != EEXIST)
                break;
        }

        exists = descriptor >= 0;
    }

    ~TemporaryFile()
    {
        if (descriptor >= 0)
            close (descriptor);

        if (exists)
            unlink (path.c_str());
    }

    TemporaryFile (const TemporaryFile&) = delete;
    TemporaryFile& operator= (const TemporaryFile&) = delete;

    [[nodiscard]] bool isOpen() const { return exists; }

    /** Leaves the cause of a failure in errno. */
    [[nodiscard]] bool fill (std::span<const std::uint8_t> bytes)
    {
        while (! bytes.empty())
        {
            const auto count = write (descriptor, bytes.data(), bytes.size());

            if (count > 0)
                bytes = bytes.subspan (static_cast<std::size_t> (count));
            else if (errno != EINTR)
                return false;
        }

        if (fsync (descriptor) != 0)
            return false;

        const auto closing = descriptor;
        descriptor = -1;
        return close (closing) == 0;
    }

    [[nodiscard]] std::error_code moveTo (const fs::path& target)
    {
        std::error_code error;
        fs::rename (path, target, error);
        exists = static_cast<bool> (error);
        return error;
    }

private:
    fs::path path;
    int descriptor = -1;
    bool exists = false;
};

std::error_code lastError()
{
    return { errno, std::generic_category() };
}

std::error_code replace (const fs::path& target, std::span<const std::uint8_t> bytes)
{
    TemporaryFile temporary (target.has_parent_path() ? target.parent_path() : fs::path ("."));

    if (! temporary.isOpen() || ! temporary.fill (bytes))
        return lastError();

    return temporary.moveTo (target);
}

} // namespace

std::string writeWholeFile (const fs::path& target,
                            std::span<const std::uint8_t> bytes,
                            std::span<const fs::path> inputs)
{
    std::error_code error;

    for (const auto& input : inputs)
        if (fs::equivalent (target, input, error))
            return target.string() + ": is the input file " + input.string() + ", which is never overwritten";

    const auto failure = [&target] (const std::error_code& cause)
    { return cause ? target.string() + ": cannot be written: " + cause.message() : std::string(); };

    const auto status = fs::status (target, error);

    if (! fs::exists (status))
        return failure (replace (target, bytes));

    if (! fs::is_regular_file (status))
        return target.string() + ": cannot be replaced: it is not a regular file";

    const auto behindLinks = fs::canonical (target, error);
    return failure (error ? error : replace (behindLinks, bytes));
}

} // namespace wqv
