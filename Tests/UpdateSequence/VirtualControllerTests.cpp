// SPDX-License-Identifier: GPL-3.0-or-later
// The virtual controller as a judge: it notes each thing that a host may do wrong. And the faults that it is told of.

#include "Conversation.h"

#include <gtest/gtest.h>

#include <array>
#include <string_view>

namespace wqv
{
namespace
{

TEST (VirtualController, notesWhatTheHostDoesWrong)
{
    Conversation package ({ 5, -5, 127 });
    const auto& data = package.blocks[2].data;
    const auto mode = enterUpdateModeRequest();
    const auto summary = packageSummaryRequest (package.info, package.blocks);
    const auto header = blockHeaderRequest (3, 127);
    const auto piece = blockDataRequest (3, data, 0);
    const auto end = finishRequest();

    const auto changed = [] (Request request, std::size_t byte)
    {
        request[byte] ^= 1;
        return request;
    };

    struct Case
    {
        std::vector<Request> requests;
        std::string error; ///< one of them ends so; empty: there is none
    };

    const Case cases[] {
        { { mode, mode, summary, header, piece, blockDataRequest (3, data, 1), end }, "" },
        { { mode, summary, header, piece, end }, "" },
        { { changed (mode, 127) }, "zero in enter update mode" },
        { { summary }, "outside update mode" },
        { { mode, changed (summary, 1) }, "that are not zero" },
        { { mode, changed (summary, 3) }, "that are not zero" },
        { { mode, changed (summary, 127) }, "zero in summary" },
        { { mode, changed (summary, 13) }, "out of order" },
        { { mode, summary, summary }, "outside update mode" },
        { { mode, summary, mode }, "middle of an update" },
        { { mode, summary, blockHeaderRequest (2, 5) }, "that is not to be written" },
        { { mode, summary, blockHeaderRequest (4, 5) }, "that is not to be written" },
        { { mode, summary, changed (header, 5) }, "zero in block header" },
        { { mode, summary, blockHeaderRequest (0, 0) }, "CRC-16" },
        { { mode, summary, header, header }, "out of turn" },
        { { mode, summary, header, piece, blockDataRequest (3, data, 1), blockHeaderRequest (1, 5) }, "out of order" },
        { { mode, summary, piece }, "out of turn" },
        { { mode, summary, header, blockDataRequest (1, data, 0) }, "out of turn" },
        { { mode, summary, header, piece, changed (blockDataRequest (3, data, 1), 2) }, "CRC-16" },
        { { mode, summary, header, piece, changed (blockDataRequest (3, data, 1), 3) }, "zero in the end of a block" },
        { { mode, summary, changed (end, 1) }, "zero in finish" },
        { { end }, "without an update" },
        { { mode, summary, end, end }, "without an update" },
        { { { 0xF5 } }, "unknown request" }
    };

    for (const auto& [requests, error] : cases)
    {
        VirtualController controller;

        for (const auto& request : requests)
            for (const auto& event : controller.receive (request).events)
                controller.happens (event);

        const auto& errors = controller.hostErrors();
        ASSERT_EQ (errors.empty(), error.empty()) << error;
        EXPECT_TRUE (errors.empty()
                     || std::ranges::any_of (errors, [&tail = error] (const auto& e) { return e.ends_with (tail); }))
            << error;
    }

    // Neither a busy report nor a report of another length is the end of a request.
    VirtualController controller (*parseFaultScript ("busy@3:1"));
    const auto react = [&] (std::span<const std::uint8_t> request) { return controller.receive (request).events; };
    controller.happens (react (mode).front());
    controller.happens (react (summary).front());
    controller.happens (react (header).front());
    static_cast<void> (react (piece));
    static_cast<void> (react (std::span (end).first (127)));
    EXPECT_EQ (controller.hostErrors(),
               (std::vector<std::string> { "request 4: a request before the answer to the last one",
                                           "request 5: a report of 127 bytes" }));
}

TEST (VirtualController, scriptsOfAnotherFormAreRefused)
{
    constexpr std::array<std::string_view, 12> texts {
        "silent",    "silent@", "silent@x", "silent@-1", "silent@1:",        "silent@1-x", "silent@1;silent@2",
        ",silent@1", "quiet@1", "@1",       "late@1:0x", "late@1:4294967296"
    };

    for (const auto text : texts)
        EXPECT_FALSE (parseFaultScript (text)) << text;
}

} // namespace
} // namespace wqv
