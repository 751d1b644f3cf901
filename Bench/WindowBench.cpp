// SPDX-License-Identifier: GPL-3.0-or-later
// The program's window beside a bare one: how soon it is complete, and how often it wakes while nothing happens.

#include "ChildProgram.h"
#include "DisplayWatch.h"
#include "TemporaryFolder.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <filesystem>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;
using Seconds = std::chrono::duration<double>;

/** A program in its surroundings. */
struct Subject
{
    std::string name;
    std::filesystem::path program;
    std::vector<std::string> environment;
};

/** Waits until the screen is as it was before all windows; false when nothing is drawn any more, but it is not. */
bool becomesEmpty (DisplayWatch& screen, const std::string& empty)
{
    while (screen.picture() != empty)
        if (! screen.waitForDrawing (30s))
            return false;

    return true;
}

/** From the start of the process to the moment from which on its window shows what it still shows at rest: whatever
    flickers before does not count as complete. */
void startUp (benchmark::State& state, const Subject& subject, const std::string& empty)
{
    using Clock = std::chrono::steady_clock;
    constexpr auto rest = 500ms;

    DisplayWatch screen;

    while (state.KeepRunning())
    {
        if (! becomesEmpty (screen, empty))
            state.SkipWithError ("the window before does not go");

        const auto start = Clock::now();
        auto changed = start;
        auto shown = empty;
        const ChildProgram child (subject.program, subject.environment);

        while (screen.waitForDrawing (shown == empty ? 30s : rest))
        {
            if (auto now = screen.picture(); now != shown)
            {
                changed = Clock::now();
                shown = std::move (now);
            }
        }

        if (shown == empty)
            state.SkipWithError ("the window did not come");

        state.SetIterationTime (Seconds (changed - start).count());
    }
}

/** Of a window that nobody touches; and how much memory it took at most. */
void wakeUps (benchmark::State& state, const Subject& subject)
{
    constexpr Seconds measuring = 10s;

    const ChildProgram child (subject.program, subject.environment);
    std::this_thread::sleep_for (3s);

    while (state.KeepRunning())
    {
        const auto before = wakeUpsOf (child.id());
        std::this_thread::sleep_for (measuring);
        state.counters["per_second"] = static_cast<double> (wakeUpsOf (child.id()) - before) / measuring.count();
        state.counters["peak_MB"] = peakMegabytesOf (child.id());
        state.SetIterationTime (measuring.count());
    }
}

/** The program beside its package, and homes with and without fonts. */
class Machine
{
public:
    Machine()
    {
        namespace fs = std::filesystem;

        const fs::path package (WQV_SAMPLE_PACKAGE);
        fs::copy_file (WQV_PROGRAM, program);
        fs::copy_file (package, folder.path (package.filename()));
        fs::create_directories (fonts);
        fs::create_directories (empty);
        fs::copy_file (WQV_FONT, fonts / "0.otf");

        for (int i = 1; i < 5000; ++i)
            fs::create_hard_link (fonts / "0.otf", fonts / (std::to_string (i) + ".otf"));
    }

    [[nodiscard]] std::vector<Subject> subjects() const
    {
        const auto home = "HOME=" + empty.string();
        const auto homeWithFonts = "HOME=" + fonts.parent_path().string();
        const auto noFonts = "JUCE_FONT_PATH=" + empty.string();

        return { { .name = "bareWindow/noFonts", .program = WQV_BARE_WINDOW, .environment = { home, noFonts } },
                 { .name = "program", .program = program, .environment = { home } },
                 { .name = "program/5000Fonts", .program = program, .environment = { homeWithFonts } } };
    }

private:
    TemporaryFolder folder;
    std::filesystem::path program = folder.path ("WQVUpdateProgram");
    std::filesystem::path fonts = folder.path ("home/.fonts");
    std::filesystem::path empty = folder.path ("empty");
};

} // namespace
} // namespace wqv

int main (int argc, char* argv[]) // NOLINT (bugprone-exception-escape): what throws has nothing to measure
{
    using namespace wqv;

    const Machine machine;
    const auto empty = DisplayWatch().picture();

    for (const auto& subject : machine.subjects())
    {
        // NOLINTBEGIN (readability-redundant-string-cstr): older versions take no string
        benchmark::RegisterBenchmark (("startUp/" + subject.name).c_str(), startUp, subject, empty)
            ->UseManualTime()
            ->Iterations (1)
            ->Repetitions (15)
            ->Unit (benchmark::kMillisecond);
        benchmark::RegisterBenchmark (("wakeUps/" + subject.name).c_str(), wakeUps, subject)
            ->UseManualTime()
            ->Iterations (1);
        // NOLINTEND (readability-redundant-string-cstr)
    }

    benchmark::Initialize (&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
