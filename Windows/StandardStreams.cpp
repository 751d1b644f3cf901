// SPDX-License-Identifier: GPL-3.0-or-later
// On Windows standard streams are no numbers that a file could get.

#include "StandardStreams.h"

namespace wqv
{

void openStandardStreams() {}

} // namespace wqv
