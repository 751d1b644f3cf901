// SPDX-License-Identifier: GPL-3.0-or-later
// Standard input, output and error of a program that was started without some of them.

#pragma once

namespace wqv
{

/** Takes the places of standard streams that are closed, so that no file or socket which the program opens later is taken
    for one of them. They still fail to be read and written. The first thing that a program calls. */
void openStandardStreams();

} // namespace wqv
