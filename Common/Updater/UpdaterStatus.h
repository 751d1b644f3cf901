// SPDX-License-Identifier: GPL-3.0-or-later
// The six statuses of the updater; each has its screen.

#pragma once

#include <cstdint>

namespace wqv
{

enum UpdaterStatus_t : std::int32_t
{
    UPDATER_STATUS_START = 0,         ///< first screen, language choice; nothing decided yet
    UPDATER_STATUS_NOT_CONNECTED = 1, ///< no matching controller is connected
    UPDATER_STATUS_READY = 2,         ///< a controller is connected; the update can be started
    UPDATER_STATUS_UPDATING = 3,      ///< the worker is running; device events go to it
    UPDATER_STATUS_COMPLETE = 4,      ///< the update finished successfully; final
    UPDATER_STATUS_ERROR = 5          ///< the update failed; final
};

} // namespace wqv
