// SPDX-License-Identifier: GPL-3.0-or-later
// Replaces a file by POSIX calls.

#include "FileReplacement.h"

#include <cerrno>
#include <cstdlib>
#include <string>

#include <sys/stat.h>
#include <unistd.h>

namespace wqv
{
namespace
{

namespace fs = std::filesystem;

/** What the process's mask leaves to a new file, as open() would give it. */
mode_t modeOfNewFiles()
{
    const auto mask = umask (0);
    umask (mask);
    return 0666 & ~mask;
}

/** A file under a name that nobody else has; gone again unless it is moved to its own. */
class TemporaryFile
{
public:
    TemporaryFile (const fs::path& directory, std::optional<fs::perms> permissions)
        : path ((directory / ".wqv-package-XXXXXX").string()),
          descriptor (mkstemp (path.data())),
          exists (descriptor >= 0)
    {
        const auto mode = permissions ? static_cast<mode_t> (*permissions) : modeOfNewFiles();

        // It is its owner's alone so far. A file system that knows no permissions refuses others, and has its own.
        ready = exists && (fchmod (descriptor, mode) == 0 || ! permissions);
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

    /** Like fill(), leaves the cause of a failure in errno. */
    [[nodiscard]] bool isReady() const { return ready; }

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
    std::string path;
    int descriptor;
    bool exists;
    bool ready = false;
};

} // namespace

std::error_code replaceFile (const fs::path& place,
                             std::optional<fs::perms> permissions,
                             std::span<const std::uint8_t> bytes)
{
    TemporaryFile temporary (place.has_parent_path() ? place.parent_path() : fs::path ("."), permissions);

    if (! temporary.isReady() || ! temporary.fill (bytes))
        return { errno, std::generic_category() };

    return temporary.moveTo (place);
}

} // namespace wqv
