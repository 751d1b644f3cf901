// SPDX-License-Identifier: GPL-3.0-or-later
// The controller's side of the update protocol, which also watches whether the host keeps to it.

#pragma once

#include "FaultScript.h"
#include "Requests.h"
#include "Responses.h"
#include "SimulatedController.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace wqv
{

/** How long a controller takes for things. Zero everywhere by default: it answers at once. */
struct ControllerPace
{
    std::chrono::milliseconds restart {};  ///< into update mode
    std::chrono::milliseconds erase {};    ///< the flash of one block
    std::chrono::milliseconds write {};    ///< one piece
    std::chrono::milliseconds complete {}; ///< the whole firmware, after the last block
    int busyPolls = 0;                     ///< finish requests that are answered "busy" meanwhile
};

/** It answers as a controller does, or as its fault script says, keeps what it receives, and notes everything that the
    host does wrong: a report of another length, bytes that should be 0, an illegal order, a request while an answer is
    owed, data that the announced CRC-16 does not fit. docs/protocol.md has the list of legal orders.
*/
class VirtualController : public SimulatedController
{
public:
    /** @param firmwareVersion  the one to begin with, in BCD */
    explicit VirtualController (FaultScript script = {},
                                ControllerPace paceToKeep = {},
                                std::int32_t firmwareVersion = 0x0100);

    /** Makes it leave the bus for each restart, into update mode and out of it; otherwise it stays there. */
    void leaveBusToRestart() { leavesBus = true; }

    [[nodiscard]] Reaction receive (std::span<const std::uint8_t> report) override;
    void happens (const Event& event) override;

    /** That of the package after a whole update. */
    [[nodiscard]] std::int32_t versionNumber() const override { return version; }

    /** The data received for each block, by number. */
    [[nodiscard]] const std::map<std::uint8_t, std::vector<std::uint8_t>>& receivedBlocks() const { return received; }

    /** What the host did wrong, in words. */
    [[nodiscard]] const std::vector<std::string>& hostErrors() const { return errors; }

    /** Requests received so far. */
    [[nodiscard]] std::size_t requestCount() const { return requests; }

    /** Whether an update has ended with every enabled block received whole. */
    [[nodiscard]] bool isUpdated() const { return hasNewFirmware; }

private:
    enum class Phase
    {
        normal,     ///< plays music
        updateMode, ///< waits for the summary
        betweenBlocks,
        inBlock, ///< waits for the block's data
        finished
    };

    /** What an answer changes: phase, wasUpdating, hasNewFirmware, version. */
    using State = std::tuple<Phase, bool, bool, std::int32_t>;

    struct Block
    {
        bool isEnabled = false;
        std::uint16_t crc16 = 0;
    };

    using Milliseconds = std::chrono::milliseconds;

    Reaction answerTo (std::span<const std::uint8_t> report);
    Reaction enterUpdateMode (std::span<const std::uint8_t> report);
    Reaction takeSummary (std::span<const std::uint8_t> report);
    Reaction takeHeader (std::span<const std::uint8_t> report);
    Reaction takeData (std::span<const std::uint8_t> report);
    Reaction finish (std::span<const std::uint8_t> report);
    void completeBlock();
    void applyFaults (Reaction& reaction, RequestCode request, const State& before);
    void restart (Reaction& reaction, Phase before) const;

    [[nodiscard]] Reaction answer (ResponseCode code, std::uint8_t value, Milliseconds delay) const;
    [[nodiscard]] Event busyReport (Milliseconds delay) const;
    [[nodiscard]] std::uint8_t percentage() const;
    [[nodiscard]] std::size_t receivedSize() const;
    [[nodiscard]] bool isWhole() const;
    void expect (bool condition, const std::string& error);
    void expectZeros (std::span<const std::uint8_t> bytes, const std::string& where);

    FaultScript faults;
    ControllerPace pace;
    std::vector<std::string> errors;
    std::size_t requests = 0;

    bool leavesBus = false;
    Phase phase = Phase::normal;
    bool answerIsOwed = false;
    bool hasNewFirmware = false;
    bool wasUpdating = false; ///< a summary was accepted, be it before an unplug
    std::int32_t version;
    std::int32_t offeredVersion = 0;
    std::uint32_t enabledSize = 0;
    std::vector<Block> blocks;
    std::uint8_t currentBlock = 0; ///< number of the last one that was announced
    std::uint32_t currentSize = 0;
    int pollsLeft = 0;
    std::map<std::uint8_t, std::vector<std::uint8_t>> received;
};

} // namespace wqv
