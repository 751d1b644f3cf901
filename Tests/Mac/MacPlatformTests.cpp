// SPDX-License-Identifier: GPL-3.0-or-later
// Languages, the executable's file and staying awake on a made-up Mac.

#include "ExecutableFile.h"
#include "FakeMac.h"
#include "PreferredLanguages.h"
#include "SleepInhibitor.h"
#include "TerminationSignals.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

namespace wqv
{
namespace
{

struct MacPlatformTest : testing::Test
{
    FakeMac mac;
};

TEST_F (MacPlatformTest, languagesAreThoseOfThePreferencesInTheirOrder)
{
    using Preference = std::vector<std::optional<std::string>>;
    using Languages = std::vector<std::string>;

    const std::pair<std::optional<Preference>, Languages> cases[] {
        { {}, {} },
        { Preference {}, {} },
        { Preference { "de-DE", "fr-FR" }, { "de_DE", "fr_FR" } },
        { Preference { {}, "no identifier", "ja" }, { "ja" } },
        { Preference { "zh-TW", "zh-Hant-HK", "zh-HK" }, { "zh_TW", "zh-Hant_HK", "zh_HK" } },
        { Preference { "de-1901-and-more", "de-1901-and-mor", "de-1901-and-more" },
          { "", "de-1901-and-mor", "de-1901-and-mor" } },
    };

    for (const auto& [preference, languages] : cases)
    {
        mac.languages = preference;
        EXPECT_EQ (preferredLanguages(), languages);
    }

    mac.languagesAreAText = true;
    EXPECT_EQ (preferredLanguages(), Languages {});
}

TEST_F (MacPlatformTest, theExecutableIsThisOneWhateverTheFolder)
{
    const auto self = std::filesystem::read_symlink ("/proc/self/exe");
    EXPECT_EQ (getExecutableFile(), self);
}

TEST_F (MacPlatformTest, eachSignalIsACallAndIsIgnoredAfterwards)
{
    constexpr std::array numbers { SIGTERM, SIGHUP, SIGINT };
    int calls = 0;

    {
        const TerminationSignals signals ([&calls] { ++calls; });

        for (const auto number : numbers)
        {
            EXPECT_TRUE (mac.raise (number));
            std::raise (number); // which must not end the process
        }

        EXPECT_EQ (calls, 3);
    }

    EXPECT_FALSE (mac.raise (SIGTERM));

    for (const auto number : numbers)
    {
        std::raise (number);
        std::signal (number, SIG_DFL);
    }
}

TEST_F (MacPlatformTest, theMachineIsAwakeWhileItIsAsked)
{
    {
        const SleepInhibitor inhibitor ("Who", "Why");
        ASSERT_EQ (mac.assertions.size(), 1u);
        EXPECT_EQ (mac.assertions[1], "PreventUserIdleSystemSleep: Who: Why");
    }

    EXPECT_TRUE (mac.assertions.empty());

    for (const auto* const function : { "IOPMAssertionCreateWithName", "CFStringCreateWithCString" })
    {
        mac.failures[function] = { 1, kIOReturnNotPermitted };
        testing::internal::CaptureStderr();
        const SleepInhibitor refused ("Who", "Why");
        EXPECT_NE (testing::internal::GetCapturedStderr(), "");
    }
}

} // namespace
} // namespace wqv
