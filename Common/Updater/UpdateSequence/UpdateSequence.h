// SPDX-License-Identifier: GPL-3.0-or-later
// The conversation of one update with the controller, from the first request to the last answer.

#pragma once

#include "PackageRecords.h"
#include "Requests.h"
#include "Responses.h"
#include "UpdateFailure.h"

#include <chrono>
#include <cstdint>
#include <optional>

namespace wqv
{

/** What a wait for the controller brought. */
struct Answer
{
    /** Whether anything came before the limit: an answer, or the news that the controller went away or came back. */
    bool signalled = false;

    /** What came was an interruption, or the wait was ended by a stop: code and value are no answer. */
    bool interrupted = false;

    /** Byte 0 of the last report; none after an interruption. Without a signal, what lay there before. */
    ResponseCode code = ResponseCode::none;

    /** Byte 1 of the last report. */
    std::uint8_t value = 0;

    /** What is left of the limit. */
    std::chrono::milliseconds remaining {};
};

/** Runs one update. It knows no thread, clock or device: it talks through a Link, which the worker gives it and the
    tests script. One object runs once, and blocks its caller in the Link's waits. */
class UpdateSequence
{
public:
    /** What the conversation needs: to send, to wait, to pause, to report progress, and to hear when it is to end. */
    class Link
    {
    public:
        /** Sends one request. Whether it arrives only the answer tells.
            @returns false when the system did not take it: the host waits for an answer all the same */
        virtual bool send (const Request& request) = 0;

        /** Waits for the controller and takes its signal, so that the next wait waits for the next one. */
        [[nodiscard]] virtual Answer wait (std::chrono::milliseconds limit) = 0;

        /** Does nothing for a while; a stop ends it. */
        virtual void pause (std::chrono::milliseconds duration) = 0;

        /** The controller's own figure for the whole update, from 0.0 to 1.0; not clamped. */
        virtual void reportProgress (double fraction) = 0;

        /** Whether the update is to end: from then on every wait returns at once, with ResponseCode::none. */
        [[nodiscard]] virtual bool stopRequested() const = 0;

    protected:
        Link() = default;
        Link (const Link&) = default;
        Link& operator= (const Link&) = default;
        ~Link() = default;
    };

    /** All three outlive this object. */
    UpdateSequence (Link& link, const upd_info_t& info, const FirmwareBlocks& blocks);

    /** Enters update mode, sends the summary, each enabled block's header and data, and polls until the controller has
        finished; the limits are those of timeLimits.

        Four rules are deliberate. When a request to enter update mode is not answered in time, the last report is
        judged nevertheless. A slow controller may answer each of several such requests; a later step passes over such
        an answer. A block is left out, which is no failure, if its header gets any real answer but the accepting one.
        And only the first and the last kind of request are ever sent twice.

        Once a stop is requested nothing more is sent, with one exception: if a block had been announced and the
        controller still takes reports, one finish request, whose answer is not waited for.

        @returns whether the controller confirmed the end of an update in which nothing failed
    */
    [[nodiscard]] bool run();

    /** Why run() returned false. */
    [[nodiscard]] const UpdateFailure& failure() const { return firstFailure; }

    /** Takes a printf-style message and writes nothing. Kept for those who build on this class. */
    template <typename... Arguments>
    static void LogPrintf (const char* /*format*/, const Arguments&... /*arguments*/)
    {
    }

    /** Whether the controller signals ten times in a row without a gap of a second. Kept for those who build on this
        class; the update does not ask. */
    [[nodiscard]] bool isAutoUpdateModeSupported();

private:
    bool exchange (const Request& request, std::chrono::milliseconds limit);
    bool awaitAnswer (std::chrono::milliseconds limit);
    [[nodiscard]] bool isLateModeAnswer();
    bool fail (UpdateFailure what);
    void showPercentage();

    [[nodiscard]] int sendUpdateMode();
    [[nodiscard]] bool sendSummary();
    [[nodiscard]] bool sendBlocks();
    [[nodiscard]] bool sendBlock (std::uint8_t number, const fw_info_t& block);
    [[nodiscard]] bool sendPiece (std::uint8_t number, const fw_info_t& block, std::uint32_t piece);
    [[nodiscard]] int recieveProgress();
    [[nodiscard]] bool pollUntilFinished();
    void sayFarewell();

    Link& link;
    const upd_info_t& upd_info;
    const FirmwareBlocks& fw_info;

    Answer answer;
    std::chrono::milliseconds waited {}; ///< for that answer

    /** Set by an interruption until an answer comes or a request is taken: the wait that it ended. */
    std::optional<std::chrono::milliseconds> interruptedAfter;
    UpdateFailure firstFailure;
    double percent = 0.0;    ///< the last figure of the data phase, 0 to 100; kept, nothing here reads it
    int modeAnswersOwed = 0; ///< requests to enter update mode that were not answered yet
    RequestCode lastRequest = RequestCode::enterUpdateMode;
    bool lastRequestTaken = true;
};

/** @p base to the power of @p exponent, modulo 2^32; 1 for an exponent of 0 or less. Kept for those who build on
    this. */
[[nodiscard]] std::int32_t beki (std::int32_t base, std::int32_t exponent);

} // namespace wqv
