// SPDX-License-Identifier: GPL-3.0-or-later
// macOS's answers to what the program asks of a system.

#include "ExecutableFile.h"
#include "MacHidService.h"
#include "Platform.h"
#include "PreferredLanguages.h"
#include "SleepInhibitor.h"
#include "TerminationSignals.h"

#include <csignal>
#include <tuple>
#include <unistd.h>
#include <utility>

namespace wqv
{
namespace
{

class MacPlatform final : public Platform
{
public:
    MacPlatform() { std::ignore = std::signal (SIGPIPE, SIG_IGN); }

    [[nodiscard]] std::filesystem::path executableFile() const override { return getExecutableFile(); }
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override { return wqv::preferredLanguages(); }

    [[nodiscard]] bool isTerminal (Stream stream) const override
    {
        return isatty (stream == Stream::input ? STDIN_FILENO : STDOUT_FILENO) == 1;
    }

    [[nodiscard]] std::unique_ptr<HidService> makeHidService() const override
    {
        return std::make_unique<MacHidService>();
    }

    [[nodiscard]] std::shared_ptr<void> keepAwake (const std::string& who, const std::string& why) const override
    {
        return std::make_shared<SleepInhibitor> (who, why);
    }

    [[nodiscard]] std::shared_ptr<void> onEndRequest (std::function<void()> callback) const override
    {
        return std::make_shared<TerminationSignals> (std::move (callback));
    }
};

} // namespace

std::unique_ptr<Platform> makePlatform()
{
    return std::make_unique<MacPlatform>();
}

} // namespace wqv
