// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the conversation of an update, with a device whose every answer comes from the input.

#include "Conversation.h"
#include "Fuzz.h"
#include "Rulebook.h"

#include <array>
#include <vector>

namespace wqv
{
namespace
{

using std::chrono::milliseconds;

/** Answers whatever the input says, through the program's mailbox. Behind the end of the input it is silent. */
class InputDevice final : public Rulebook
{
public:
    InputDevice (Input& inputToUse, const upd_info_t& info, const FirmwareBlocks& blocks)
        : Rulebook (info, blocks), input (inputToUse)
    {
    }

private:
    bool send (const Request& request) override
    {
        const auto isTaken = ! std::exchange (refusesNext, false);
        sent (request, isTaken);
        return isTaken;
    }

    Answer wait (milliseconds limit) override
    {
        const auto isOver = input.isOver();
        auto step = input.byte();

        while (! isOver && arrive (step % 8) && step % 16 >= 8)
            step = input.byte();

        auto answer = mailbox.wait (milliseconds {}, [this] { mailbox.turned(); });
        const std::array<milliseconds, 4> left { limit, limit / 2, std::min (limit, milliseconds (1)), {} };
        answer.remaining = answer.signalled ? left.at (step / 16 % 4) : milliseconds {};
        refusesNext = step >= 192;
        heard (answer, limit);

        if (stopsAfterThis)
            stop();

        return answer;
    }

    /** @returns whether more may arrive before the wait is over */
    bool arrive (unsigned kind)
    {
        switch (kind)
        {
            case 0: // what the host hopes for
            case 1: mailbox.store (std::array { rightAnswer, input.byte() }, true); break;
            case 2: mailbox.store (std::array { input.byte(), input.byte() }, true); break;
            case 3: mailbox.store (std::vector (1 + input.byte() % 4, input.byte()), true); break;
            case 4: mailbox.interrupt(); break;
            case 5: stop(); break;
            case 6: stopsAfterThis = true; break;
            default: return false;
        }

        return true;
    }

    void stop()
    {
        mailbox.stop();
        isStopped = true;
    }

    Input& input;
    ResponseMailbox mailbox;
    bool refusesNext = false;
    bool stopsAfterThis = false;
};

/** Sizes for a Conversation: negative for a block that is not to be written. */
std::vector<int> sizesFrom (Input& input)
{
    std::vector<int> sizes (input.byte() % (maximumBlockCount + 1));

    for (auto& size : sizes)
    {
        const int low = input.byte();
        const int word = low | input.byte() << 8;
        size = (word >= 0x8000 ? -1 : 1) * (word % 0x8000 % 260);
    }

    return sizes;
}

} // namespace
} // namespace wqv

int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    wqv::Input input ({ data, size });
    const wqv::Conversation update (wqv::sizesFrom (input)); // for its package alone
    wqv::InputDevice device (input, update.info, update.blocks);
    wqv::UpdateSequence sequence (device, update.info, update.blocks);
    const auto isComplete = sequence.run();
    device.ended (isComplete, sequence.failure());
    return 0;
}
