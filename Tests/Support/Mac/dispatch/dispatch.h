// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for libdispatch: the documented functions that Mac/ uses.

#pragma once

#include <cstdint>

using dispatch_object_t = struct DispatchObject*;
using dispatch_queue_t = dispatch_object_t;
using dispatch_source_t = dispatch_object_t;
using dispatch_source_type_t = const struct DispatchSourceType*;
using dispatch_function_t = void (*) (void* context);

inline constexpr dispatch_source_type_t DISPATCH_SOURCE_TYPE_SIGNAL = nullptr;

dispatch_queue_t dispatch_get_main_queue();
dispatch_source_t dispatch_source_create (dispatch_source_type_t,
                                          std::uintptr_t handle,
                                          std::uintptr_t mask,
                                          dispatch_queue_t);
void dispatch_set_context (dispatch_object_t, void* context);
void dispatch_source_set_event_handler_f (dispatch_source_t, dispatch_function_t handler);
void dispatch_resume (dispatch_object_t);
void dispatch_source_cancel (dispatch_source_t);
void dispatch_release (dispatch_object_t);
