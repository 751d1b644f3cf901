// SPDX-License-Identifier: GPL-3.0-or-later
// What the program asks of a system: the seam behind which the folders of the systems stand.

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace wqv
{

class HidService;

/** A system, for programs with a window and without. What a window needs besides is in WindowSystem.h. Message thread. */
class Platform
{
public:
    Platform() = default;
    Platform (const Platform&) = delete;
    Platform& operator= (const Platform&) = delete;
    virtual ~Platform() = default;

    /** The file of the running executable, however it was started: links are resolved, and neither the working directory
        nor a search path matters. Empty if the system does not tell, which a line on standard error then says. */
    [[nodiscard]] virtual std::filesystem::path executableFile() const = 0;

    /** The user's preferred languages as the table of languages names them, most preferred first: language, script for
        Chinese, region, as in "de-DE" or "zh-Hant-TW". */
    [[nodiscard]] virtual std::vector<std::string> preferredLanguages() const = 0;

    enum class Stream
    {
        input,
        output
    };

    /** Whether somebody sits at a terminal behind a standard stream of the process. */
    [[nodiscard]] virtual bool isTerminal (Stream stream) const = 0;

    /** The system's HID devices. Needs the message loop. */
    [[nodiscard]] virtual std::unique_ptr<HidService> makeHidService() const = 0;

    /** The machine does not sleep, and turning it off is held up, while what is returned lives. Does not wait; if the system
        refuses, a line on standard error says so and nothing else happens.
        @param who, why  for people, UTF-8: a desktop may show them */
    [[nodiscard]] virtual std::shared_ptr<void> keepAwake (const std::string& who, const std::string& why) const = 0;

    /** Calls back whenever the system asks the program to end, while what is returned lives; after that the end is under
        way, and such requests are ignored. One at a time. */
    [[nodiscard]] virtual std::shared_ptr<void> onEndRequest (std::function<void()> callback) const = 0;
};

/** The system that the program was linked for. From here on a reader of our output who goes away does not end the process, which
    may be in the middle of an update. */
[[nodiscard]] std::unique_ptr<Platform> makePlatform();

} // namespace wqv
