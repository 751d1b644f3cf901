// SPDX-License-Identifier: GPL-3.0-or-later
// Writes a file whole or not at all, by POSIX calls: only they wait for the disk, and tell "not there" from other
// errors.

#include "OutputFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <optional>
#include <system_error>

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
    /** @param mode  its permissions; without one, those of any new file */
    TemporaryFile (const fs::path& directory, std::optional<mode_t> mode)
        : path ((directory / ".wqv-package-XXXXXX").string()),
          descriptor (mkstemp (path.data())),
          exists (descriptor >= 0)
    {
        // It is its owner's alone so far. A file system that knows no permissions refuses others, and has its own.
        ready = exists && (fchmod (descriptor, mode.value_or (modeOfNewFiles())) == 0 || ! mode);
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

std::error_code lastError()
{
    return { errno, std::generic_category() };
}

/** What lies at a place, links not followed; nothing when it is sure that there is nothing. */
std::optional<struct stat> look (const fs::path& place, std::error_code& error)
{
    struct stat found
    {};

    if (lstat (place.c_str(), &found) == 0)
        return found;

    if (errno != ENOENT)
        error = lastError();

    return {};
}

/** Follows links to their end, also to one where nothing is. */
fs::path behindLinks (fs::path place, std::error_code& error)
{
    constexpr int asManyAsTheKernelFollows = 40;

    for (int links = 0; links <= asManyAsTheKernelFollows; ++links)
    {
        const auto found = look (place, error);

        if (error || ! found || ! S_ISLNK (found->st_mode))
            return place;

        place = place.parent_path() / fs::read_symlink (place, error);
    }

    error = std::make_error_code (std::errc::too_many_symbolic_link_levels);
    return place;
}

/** Whether @p found is the file that @p name leads to, or the link of that name. */
bool isNamed (const struct stat& found, const fs::path& name)
{
    const auto isOneOf = [&] (auto find)
    {
        struct stat other
        {};
        return find (name.c_str(), &other) == 0 && other.st_dev == found.st_dev && other.st_ino == found.st_ino;
    };

    return isOneOf (stat) || isOneOf (lstat);
}

std::error_code replace (const fs::path& place, std::optional<mode_t> mode, std::span<const std::uint8_t> bytes)
{
    TemporaryFile temporary (place.has_parent_path() ? place.parent_path() : fs::path ("."), mode);

    if (! temporary.isReady() || ! temporary.fill (bytes))
        return lastError();

    return temporary.moveTo (place);
}

} // namespace

std::string writeWholeFile (const fs::path& target,
                            Links links,
                            std::span<const std::uint8_t> bytes,
                            std::span<const fs::path> inputs)
{
    std::error_code error;
    const auto place = links == Links::follow ? behindLinks (target, error) : target;
    const auto old = error ? std::nullopt : look (place, error);
    std::optional<mode_t> mode;

    if (old)
    {
        const auto input = std::ranges::find_if (inputs, [&] (const auto& name) { return isNamed (*old, name); });

        if (input != inputs.end())
            return target.string() + ": is the input file " + input->string() + ", which is never overwritten";

        if (! S_ISREG (old->st_mode) && ! S_ISLNK (old->st_mode))
            return target.string() + ": cannot be replaced: it is not a regular file";

        if (S_ISREG (old->st_mode))
            mode = old->st_mode & 0777;
    }

    if (! error)
        error = replace (place, mode, bytes);

    return error ? target.string() + ": cannot be written: " + error.message() : std::string();
}

} // namespace wqv
