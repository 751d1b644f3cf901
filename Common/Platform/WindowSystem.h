// SPDX-License-Identifier: GPL-3.0-or-later
// What the program's window asks of a system: the second half of the seam.

#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace juce
{
class ResizableWindow;
}

namespace wqv
{

enum FlgTable : std::int32_t;

/** What a system does for one window, while this object lives. Message thread. */
class WindowAttachment
{
public:
    WindowAttachment() = default;
    WindowAttachment (const WindowAttachment&) = delete;
    WindowAttachment& operator= (const WindowAttachment&) = delete;
    virtual ~WindowAttachment() = default;

    /** Brings the window to the front, onto the desktop that the user looks at, and gives it the keyboard. */
    virtual void raise() = 0;
};

/** The system's desktop. */
class WindowSystem
{
public:
    WindowSystem() = default;
    WindowSystem (const WindowSystem&) = delete;
    WindowSystem& operator= (const WindowSystem&) = delete;
    virtual ~WindowSystem() = default;

    /** Makes this process the only instance for the user and display, until this object goes, or has the other instance
        raise its window and waits for that. For the start of the process, before JUCE's.
        @returns nothing if the program is to go on, else the exit status to end with; standard error has the reason of a failure */
    [[nodiscard]] virtual std::optional<int> yieldToOtherInstance() = 0;

    /** Whether JUCE is to look for another instance, where its own way is safe. */
    [[nodiscard]] virtual bool leavesInstancesToJuce() const = 0;

    /** The section of the language table that names the fonts of this system; FLG_NONE for the embedded ones alone. */
    [[nodiscard]] virtual FlgTable fontSection() const = 0;

    /** Attaches to a window: its size stays as it is, it follows all that the display tells, and another instance raises it
        while it is visible.
        @param window         has its size, is not yet on the desktop, outlives what is returned
        @param onDisplayLoss  called when the display goes away, in the middle of anything and just before the process ends
                              with status 1: it must not use the display */
    [[nodiscard]] virtual std::unique_ptr<WindowAttachment> attach (juce::ResizableWindow& window,
                                                                    std::function<void()> onDisplayLoss) = 0;
};

/** The desktop of the system that the program was linked for. Before JUCE starts.
    @param program  the program's name, by which its instances know one another */
[[nodiscard]] std::unique_ptr<WindowSystem> makeWindowSystem (const std::string& program);

} // namespace wqv
