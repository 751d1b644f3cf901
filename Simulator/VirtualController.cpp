// SPDX-License-Identifier: GPL-3.0-or-later
// Answers, checks and faults of the virtual controller.

#include "VirtualController.h"

#include "Checksums.h"
#include "FirmwareVersion.h"
#include "LittleEndian.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace wqv
{
namespace
{

constexpr std::uint8_t refusal = 2;
constexpr int reportsWhileErasing = 3;

/** Whether an answer lets the host go on from a request. */
bool agrees (ResponseCode answer, RequestCode request)
{
    switch (request)
    {
        case RequestCode::enterUpdateMode: return answer == ResponseCode::updateMode;
        case RequestCode::packageSummary: return answer == ResponseCode::summaryAccepted;
        case RequestCode::blockHeader: return answer == ResponseCode::ready;
        case RequestCode::blockData:
            return answer == ResponseCode::ready || answer == ResponseCode::blockAccepted
                   || answer == ResponseCode::blockVerified;
        case RequestCode::finish: return answer == ResponseCode::busy || answer == ResponseCode::updateFinished;
    }

    return false;
}

std::int32_t binaryCodedDecimal (std::int32_t number)
{
    return number / 1000 % 10 * 4096 + number / 100 % 10 * 256 + number / 10 % 10 * 16 + number % 10;
}

} // namespace

VirtualController::VirtualController (FaultScript script, ControllerPace paceToKeep, std::int32_t firmwareVersion)
    : faults (std::move (script)), pace (paceToKeep), version (firmwareVersion)
{
}

VirtualController::Reaction VirtualController::receive (std::span<const std::uint8_t> report)
{
    ++requests;

    if (std::ranges::any_of (faults,
                             [this] (const Fault& fault)
                             { return fault.kind == Fault::Kind::hold && fault.concerns (requests); }))
        return { .isTaken = false, .takesMore = false };

    if (report.size() != requestSize)
    {
        expect (false, "a report of " + std::to_string (report.size()) + " bytes");
        return {};
    }

    const auto code = static_cast<RequestCode> (report.front());
    const auto mayInterrupt = code == RequestCode::enterUpdateMode || code == RequestCode::finish;
    expect (! answerIsOwed || mayInterrupt, "a request before the answer to the last one");
    answerIsOwed = true;

    const State before { phase, wasUpdating, hasNewFirmware, version };
    auto reaction = answerTo (report);
    applyFaults (reaction, code, before);

    if (leavesBus)
        restart (reaction, std::get<Phase> (before));

    return reaction;
}

void VirtualController::happens (const Event& event)
{
    if (event.kind == Event::Kind::report)
    {
        answerIsOwed = answerIsOwed && ! event.isFinalAnswer;
        return;
    }

    answerIsOwed = false;
    phase = event.startsInUpdateMode ? Phase::updateMode : Phase::normal;

    if (event.kind == Event::Kind::unplug)
        note ("controller unplugged");
    else
        note (std::string ("controller plugged in") + (event.startsInUpdateMode ? " in update mode" : "")
              + ", firmware version " + firmwareVersionText (version));
}

VirtualController::Reaction VirtualController::answerTo (std::span<const std::uint8_t> report)
{
    switch (static_cast<RequestCode> (report.front()))
    {
        case RequestCode::enterUpdateMode: return enterUpdateMode (report);
        case RequestCode::packageSummary: return takeSummary (report);
        case RequestCode::blockHeader: return takeHeader (report);
        case RequestCode::blockData: return takeData (report);
        case RequestCode::finish: return finish (report);
    }

    expect (false, "an unknown request");
    return {};
}

VirtualController::Reaction VirtualController::enterUpdateMode (std::span<const std::uint8_t> report)
{
    expect (phase == Phase::normal || phase == Phase::updateMode, "update mode asked for in the middle of an update");
    expectZeros (report.subspan (1), "enter update mode");

    const auto delay = leavesBus && phase == Phase::updateMode ? Milliseconds {} : pace.restart;
    phase = Phase::updateMode;
    hasNewFirmware = false;
    received.clear();
    blocks.clear();
    currentBlock = 0;
    note ("update mode entered");
    return answer (ResponseCode::updateMode, static_cast<std::uint8_t> (ModeStatus::entered), delay);
}

VirtualController::Reaction VirtualController::takeSummary (std::span<const std::uint8_t> report)
{
    constexpr std::size_t firstEntry = 10;
    constexpr std::size_t entrySize = 3;

    expect (phase == Phase::updateMode, "a summary outside update mode");

    offeredVersion = (report[2] << 8 | report[3]) >> 4;
    enabledSize = littleEndian (report.subspan (7, 3));
    blocks.clear();

    auto rest = report.subspan (firstEntry);

    for (; rest.size() >= entrySize && rest[0] != 0; rest = rest.subspan (entrySize))
    {
        blocks.push_back (
            { .isEnabled = rest[0] >= 0x80, .crc16 = static_cast<std::uint16_t> (littleEndian (rest.subspan (1, 2))) });
        expect ((rest[0] & 0x7F) == blocks.size(), "summary entries out of order");
    }

    expectZeros (rest, "summary");
    expect (report[1] == 0 && report[3] % 16 == 0, "summary fields that are not zero");
    expect (enabledSize <= littleEndian (report.subspan (4, 3)), "more enabled than there is");

    phase = Phase::betweenBlocks;
    wasUpdating = true;
    pollsLeft = pace.busyPolls;
    note ("summary received, " + std::to_string (blocks.size()) + " blocks, version "
          + firmwareVersionText (binaryCodedDecimal (offeredVersion)));
    return answer (ResponseCode::summaryAccepted, 0, {});
}

VirtualController::Reaction VirtualController::takeHeader (std::span<const std::uint8_t> report)
{
    const auto number = report[1];
    const auto isKnown = number >= 1 && number <= blocks.size();

    expect (phase == Phase::betweenBlocks, "a block header out of turn");
    expect (isKnown && blocks[number - 1U].isEnabled, "the header of a block that is not to be written");
    expect (number > currentBlock, "blocks out of order");
    expectZeros (report.subspan (5), "block header");

    currentBlock = number;
    currentSize = littleEndian (report.subspan (2, 3));
    received[number].clear();
    phase = Phase::inBlock;

    if (currentSize == 0)
        completeBlock();

    return answer (ResponseCode::ready, percentage(), {});
}

VirtualController::Reaction VirtualController::takeData (std::span<const std::uint8_t> report)
{
    const auto isExpected = phase == Phase::inBlock && report[1] == currentBlock;
    expect (isExpected, "block data out of turn");

    if (! isExpected)
        return {};

    auto& data = received[currentBlock];
    const auto isFirst = data.empty();
    const auto count = std::min<std::size_t> (pieceSize, currentSize - data.size());
    const auto piece = report.subspan (2);

    data.insert (data.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t> (count));
    expectZeros (piece.subspan (count), "the end of a block");

    const auto isLast = data.size() == currentSize;

    if (isLast)
        completeBlock();

    const auto lastAnswer = currentBlock % 2 == 1 ? ResponseCode::blockAccepted : ResponseCode::blockVerified;
    const auto delay = pace.write + (isFirst ? pace.erase : Milliseconds {});
    auto reaction = answer (isLast ? lastAnswer : ResponseCode::ready, percentage(), delay);

    if (isFirst && pace.erase > Milliseconds {})
        for (int i = 1; i <= reportsWhileErasing; ++i)
            reaction.events.insert (reaction.events.end() - 1, busyReport (pace.erase * i / (reportsWhileErasing + 1)));

    return reaction;
}

VirtualController::Reaction VirtualController::finish (std::span<const std::uint8_t> report)
{
    expect (wasUpdating && phase != Phase::finished, "finish without an update");
    expectZeros (report.subspan (1), "finish");

    // A controller that has lost its update agrees as well: it is the host that must know.
    if (pollsLeft-- > 0)
        return answer (ResponseCode::busy, percentage(), pace.complete / pace.busyPolls);

    phase = Phase::finished;

    if (std::exchange (wasUpdating, false))
        hasNewFirmware = isWhole();

    if (hasNewFirmware)
        version = binaryCodedDecimal (offeredVersion);

    note (hasNewFirmware ? "update finished, firmware version " + firmwareVersionText (version) : "update broken off");
    return answer (ResponseCode::updateFinished, 100, {});
}

void VirtualController::completeBlock()
{
    const auto& data = received[currentBlock];

    expect (currentBlock >= 1 && currentBlock <= blocks.size() && calcCRC16 (data) == blocks[currentBlock - 1U].crc16,
            "a block that does not fit its CRC-16");
    phase = Phase::betweenBlocks;
    note ("block " + std::to_string (currentBlock) + " received, " + std::to_string (data.size()) + " bytes");
}

void VirtualController::applyFaults (Reaction& reaction, RequestCode request, const State& before)
{
    for (const auto& fault : faults)
    {
        // A controller that is silent or gone has no answer to spoil.
        if (! fault.concerns (requests) || reaction.events.empty() || reaction.events.back().report.empty())
            continue;

        auto& last = reaction.events.back();
        const auto isModeAnswer = request == RequestCode::enterUpdateMode && last.report.size() > 1;
        const auto putOff = [&] (std::uint8_t status)
        {
            if (isModeAnswer)
            {
                last.report[1] = status;
                phase = Phase::normal;
            }
        };

        switch (fault.kind)
        {
            case Fault::Kind::silent: reaction.events.clear(); break;
            case Fault::Kind::late: last.delay += Milliseconds (fault.value); break;
            case Fault::Kind::brief: last.report.resize (1); break;
            case Fault::Kind::refuse: putOff (refusal); break;
            case Fault::Kind::notYet: putOff (static_cast<std::uint8_t> (ModeStatus::notYet)); break;
            case Fault::Kind::unplug: reaction.events = { { .kind = Event::Kind::unplug } }; break;
            case Fault::Kind::leave:
                reaction.events.push_back ({ .kind = Event::Kind::unplug, .delay = last.delay });
                break;
            case Fault::Kind::hold: break;

            case Fault::Kind::wrong:
                last.report[0] = static_cast<std::uint8_t> (fault.value);

                // If the spoilt answer is no agreement, the step has not happened.
                if (! agrees (static_cast<ResponseCode> (last.report[0]), request))
                    std::tie (phase, wasUpdating, hasNewFirmware, version) = before;

                break;

            case Fault::Kind::replug:
                reaction.events = { { .kind = Event::Kind::unplug },
                                    { .kind = Event::Kind::plugIn, .delay = Milliseconds (fault.value) } };
                break;

            case Fault::Kind::busy:
            case Fault::Kind::burst:
            {
                const auto gap = fault.kind == Fault::Kind::busy ? pace.write : Milliseconds {};
                const auto first = last.delay;
                last.delay += gap * fault.value;

                for (std::uint32_t i = 0; i < fault.value; ++i)
                    reaction.events.insert (reaction.events.end() - 1, busyReport (first + gap * i));

                break;
            }
        }
    }
}

/** Adds a restart: into update mode instead of the answer, out of it after the answer. */
void VirtualController::restart (Reaction& reaction, Phase before) const
{
    if (reaction.events.empty() || reaction.events.back().report.size() < 2)
        return;

    const auto delay = reaction.events.back().delay;

    // The request that makes it restart gets no answer: the host asks again.
    if (before == Phase::normal && phase == Phase::updateMode)
        reaction.events = { { .kind = Event::Kind::unplug },
                            { .kind = Event::Kind::plugIn, .delay = delay, .startsInUpdateMode = true } };

    if (phase == Phase::finished)
    {
        reaction.events.push_back ({ .kind = Event::Kind::unplug, .delay = delay });
        reaction.events.push_back ({ .kind = Event::Kind::plugIn, .delay = delay + pace.restart });
    }
}

VirtualController::Reaction VirtualController::answer (ResponseCode code, std::uint8_t value, Milliseconds delay) const
{
    std::vector<std::uint8_t> report (requestSize);
    report[0] = static_cast<std::uint8_t> (code);
    report[1] = value;

    Reaction reaction;
    reaction.events.push_back ({ .delay = delay, .report = std::move (report), .isFinalAnswer = true });
    return reaction;
}

VirtualController::Event VirtualController::busyReport (Milliseconds delay) const
{
    auto event = answer (ResponseCode::busy, percentage(), delay).events.front();
    event.isFinalAnswer = false;
    return event;
}

std::uint8_t VirtualController::percentage() const
{
    const auto share = enabledSize == 0 ? 100 : receivedSize() * 100 / enabledSize;
    return static_cast<std::uint8_t> (std::min<std::size_t> (share, 100));
}

std::size_t VirtualController::receivedSize() const
{
    std::size_t size = 0;

    for (const auto& [number, data] : received)
        size += data.size();

    return size;
}

bool VirtualController::isWhole() const
{
    return receivedSize() == enabledSize;
}

void VirtualController::expect (bool condition, const std::string& error)
{
    if (condition)
        return;

    errors.push_back ("request " + std::to_string (requests) + ": " + error);
    note ("host error: " + errors.back());
}

void VirtualController::expectZeros (std::span<const std::uint8_t> bytes, const std::string& where)
{
    expect (std::ranges::all_of (bytes, [] (auto byte) { return byte == 0; }), "bytes that are not zero in " + where);
}

} // namespace wqv
