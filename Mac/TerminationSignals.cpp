// SPDX-License-Identifier: GPL-3.0-or-later
// The signals as sources of the main dispatch queue, which the main run loop serves.

#include "TerminationSignals.h"

#include <csignal>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::array terminationSignalNumbers { SIGTERM, SIGHUP, SIGINT };

} // namespace

TerminationSignals::TerminationSignals (std::function<void()> onSignal) : callback (std::move (onSignal))
{
    for (std::size_t i = 0; i < sources.size(); ++i)
    {
        // A source hears of a signal all the same, and it must not end the process.
        std::signal (terminationSignalNumbers[i], SIG_IGN);

        sources[i] = dispatch_source_create (DISPATCH_SOURCE_TYPE_SIGNAL,
                                             static_cast<std::uintptr_t> (terminationSignalNumbers[i]),
                                             0,
                                             dispatch_get_main_queue());

        if (sources[i] == nullptr)
            continue;

        dispatch_set_context (sources[i], this);
        dispatch_source_set_event_handler_f (
            sources[i], [] (void* context) { static_cast<TerminationSignals*> (context)->callback(); });
        dispatch_resume (sources[i]);
    }
}

TerminationSignals::~TerminationSignals()
{
    for (auto* const source : sources)
    {
        if (source != nullptr)
        {
            dispatch_source_cancel (source);
            dispatch_release (source);
        }
    }
}

} // namespace wqv
