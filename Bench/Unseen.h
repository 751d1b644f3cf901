// SPDX-License-Identifier: GPL-3.0-or-later
// A listener of the updater that shows nothing.

#pragma once

#include "Updater.h"

namespace wqv
{

struct Unseen final : Updater::Listener
{
    void updaterChanged() override {}
};

} // namespace wqv
