// SPDX-License-Identifier: GPL-3.0-or-later
// Standard streams are no numbers there that a file could get.

#include "StandardStreams.h"

namespace wqv
{

void openStandardStreams() {}

} // namespace wqv
