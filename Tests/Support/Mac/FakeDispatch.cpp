// SPDX-License-Identifier: GPL-3.0-or-later
// Sources of signals that a test sets off.

#include <dispatch/dispatch.h>

#include "FakeDispatch.h"

#include <map>

struct DispatchObject
{
    dispatch_function_t handler = nullptr;
    void* context = nullptr;
    bool isActive = false;
};

struct DispatchSourceType
{};

namespace
{

constexpr DispatchSourceType typeOfSignals;
DispatchObject mainQueue;
std::map<std::uintptr_t, DispatchObject> sources; // by signal

} // namespace

const dispatch_source_type_t dispatchSignals = &typeOfSignals;

dispatch_queue_t dispatch_get_main_queue()
{
    return &mainQueue;
}

dispatch_source_t dispatch_source_create (dispatch_source_type_t type,
                                          std::uintptr_t handle,
                                          std::uintptr_t /*mask*/,
                                          dispatch_queue_t queue)
{
    return type == dispatchSignals && queue == &mainQueue && ! sources.contains (handle) ? &sources[handle] : nullptr;
}

void dispatch_set_context (dispatch_object_t object, void* context)
{
    object->context = context;
}

void dispatch_source_set_event_handler_f (dispatch_source_t source, dispatch_function_t handler)
{
    source->handler = handler;
}

void dispatch_resume (dispatch_object_t object)
{
    object->isActive = true;
}

void dispatch_source_cancel (dispatch_source_t source)
{
    source->isActive = false;
}

void dispatch_release (dispatch_object_t object)
{
    std::erase_if (sources, [object] (const auto& source) { return &source.second == object; });
}

namespace wqv
{

bool raiseOnFakeMac (int signal)
{
    const auto source = sources.find (static_cast<std::uintptr_t> (signal));

    if (source == sources.end() || ! source->second.isActive)
        return false;

    source->second.handler (source->second.context);
    return true;
}

std::size_t fakeSignalSources()
{
    return sources.size();
}

} // namespace wqv
