// SPDX-License-Identifier: GPL-3.0-or-later
// What the stand-in for libdispatch does: sources of signals that a test raises.

#include "FakeMac.h"

#include <gtest/gtest.h>

dispatch_queue_t dispatch_get_main_queue()
{
    static char queue;
    return reinterpret_cast<dispatch_queue_t> (&queue);
}

dispatch_source_t dispatch_source_create (dispatch_source_type_t,
                                          std::uintptr_t handle,
                                          std::uintptr_t /*mask*/,
                                          dispatch_queue_t queue)
{
    EXPECT_EQ (queue, dispatch_get_main_queue());
    return make<dispatch_source_t> ({ .number = static_cast<int> (handle) });
}

void dispatch_set_context (dispatch_object_t object, void* context)
{
    objectAt (object).context = context;
}

void dispatch_source_set_event_handler_f (dispatch_source_t source, dispatch_function_t handler)
{
    objectAt (source).handler = handler;
}

void dispatch_resume (dispatch_object_t object)
{
    objectAt (object).isActive = true;
}

void dispatch_source_cancel (dispatch_source_t source)
{
    objectAt (source).isActive = false;
}

void dispatch_release (dispatch_object_t object)
{
    CFRelease (object);
}
