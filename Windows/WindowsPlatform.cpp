// SPDX-License-Identifier: GPL-3.0-or-later
// Windows's answers to what the program asks of a system.

#include "ExecutableFile.h"
#include "Platform.h"
#include "PreferredLanguages.h"
#include "SleepInhibitor.h"
#include "TerminationSignals.h"
#include "WindowsHidService.h"

#include <utility>

namespace wqv
{
namespace
{

class WindowsPlatform final : public Platform
{
public:
    [[nodiscard]] std::filesystem::path executableFile() const override { return getExecutableFile(); }
    [[nodiscard]] std::vector<std::string> preferredLanguages() const override { return wqv::preferredLanguages(); }

    [[nodiscard]] bool isTerminal (Stream stream) const override
    {
        DWORD mode = 0;
        return GetConsoleMode (GetStdHandle (stream == Stream::input ? STD_INPUT_HANDLE : STD_OUTPUT_HANDLE), &mode)
               != FALSE;
    }

    [[nodiscard]] std::unique_ptr<HidService> makeHidService() const override
    {
        return std::make_unique<WindowsHidService>();
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
    return std::make_unique<WindowsPlatform>();
}

} // namespace wqv
