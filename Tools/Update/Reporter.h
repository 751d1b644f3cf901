// SPDX-License-Identifier: GPL-3.0-or-later
// What wqv-update tells, step by step: as text for people, or as JSON.

#pragma once

#include "Words.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace wqv
{

class Output;

/** How it ended with one controller. */
struct Outcome
{
    Result result = Result::failed;
    std::optional<UpdateFailure> failure {}; ///< if an update was begun and did not end well
    std::string reason {};                   ///< if none was begun: why, for people
    int number = 0;                          ///< of the controller, from 1; 0 if only one is to be updated
};

/** Hears of each step; message thread. */
class Reporter
{
public:
    Reporter() = default;
    Reporter (const Reporter&) = delete;
    Reporter& operator= (const Reporter&) = delete;
    virtual ~Reporter() = default;

    virtual void devices (const std::vector<DeviceRoster::Entry>& entries, const std::optional<HidDevice>& chosen) = 0;

    /** For a controller. @param reason  why there is none yet, for people */
    virtual void waiting (const std::string& reason) = 0;

    /** A controller is there. Versions are decimal numbers, 105 is 1.05. */
    virtual void versions (std::int32_t ofController, std::int32_t ofPackage, int number) = 0;

    /** The user is to type an answer. */
    virtual void question() = 0;
    virtual void answered() = 0;

    /** @param fraction  0.0 to 1.0, as the controller says; any other number is shown as the nearest of these */
    virtual void progress (double fraction) = 0;
    virtual void outcome (const Outcome& outcome) = 0;

    /** After the last of many. */
    virtual void summary (int complete, int notComplete) = 0;
};

/** @param isTerminal  progress is one line that is written again and again */
[[nodiscard]] std::unique_ptr<Reporter> makePlainReporter (Output& output, bool isTerminal);

/** One object a line. */
[[nodiscard]] std::unique_ptr<Reporter> makeJsonReporter (Output& output);

} // namespace wqv
