// SPDX-License-Identifier: GPL-3.0-or-later
// An updater that nobody looks at.

#pragma once

#include "Updater.h"

namespace wqv
{

struct Unseen final : Updater::Listener
{
    void updaterChanged() override {}
};

} // namespace wqv
