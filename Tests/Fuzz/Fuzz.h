// SPDX-License-Identifier: GPL-3.0-or-later
// What every fuzzer uses: a reader of its input, and a check that ends the process.

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>

/** libFuzzer calls this with each input. */
extern "C" int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size);

namespace wqv
{

/** Ends the process if a promise is broken: libFuzzer then keeps the input. */
inline void expect (bool isKept, const char* promise)
{
    if (isKept)
        return;

    std::fprintf (stderr, "BROKEN: %s\n", promise);
    std::abort();
}

/** Takes an input apart, byte by byte; behind its end all bytes are 0. */
class Input
{
public:
    explicit Input (std::span<const std::uint8_t> bytes) : rest (bytes) {}

    [[nodiscard]] bool isOver() const { return rest.empty(); }

    [[nodiscard]] std::uint8_t byte()
    {
        if (rest.empty())
            return 0;

        const auto first = rest.front();
        rest = rest.subspan (1);
        return first;
    }

private:
    std::span<const std::uint8_t> rest;
};

} // namespace wqv
