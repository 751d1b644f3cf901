// SPDX-License-Identifier: GPL-3.0-or-later
// inotify on the message loop, for changes of permissions.

#include "AttributeWatch.h"

#include <juce_events/juce_events.h>

#include <array>
#include <climits>
#include <cstring>
#include <filesystem>
#include <sys/inotify.h>
#include <unistd.h>
#include <utility>

namespace wqv
{

AttributeWatch::AttributeWatch (std::function<void (std::string_view)> onChange)
    : descriptor (inotify_init1 (IN_NONBLOCK | IN_CLOEXEC)), callback (std::move (onChange))
{
    if (descriptor >= 0)
        juce::LinuxEventLoop::registerFdCallback (descriptor, [this] (int) { readEvents(); });
}

AttributeWatch::~AttributeWatch()
{
    if (descriptor < 0)
        return;

    juce::LinuxEventLoop::unregisterFdCallback (descriptor);
    close (descriptor);
}

void AttributeWatch::followFolderOf (const std::string& path) const
{
    inotify_add_watch (descriptor, std::filesystem::path (path).parent_path().c_str(), IN_ATTRIB);
}

void AttributeWatch::readEvents()
{
    constexpr auto largestEvent = sizeof (inotify_event) + NAME_MAX + 1;
    std::array<char, 8 * largestEvent> bytes {};

    for (;;)
    {
        const auto length = read (descriptor, bytes.data(), bytes.size());

        if (length <= 0)
            return;

        for (const auto* next = bytes.data(); next < bytes.data() + length;)
        {
            inotify_event event {};
            std::memcpy (&event, next, sizeof (event));
            const auto* const name = next + sizeof (event);
            next = name + event.len;

            // It ends with zeros; an event of the folder itself has none.
            if (event.len > 0)
                callback (name);
        }
    }
}

} // namespace wqv
