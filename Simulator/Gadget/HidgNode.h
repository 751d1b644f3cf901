// SPDX-License-Identifier: GPL-3.0-or-later
// The device's side of one HID interface: /dev/hidgN.

#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <vector>

namespace wqv
{

/** Reads what the host sends and writes what the host is to fetch; never blocks but in open(). Any one thread. */
class HidgNode
{
public:
    HidgNode() = default;
    ~HidgNode() { close(); }

    HidgNode (const HidgNode&) = delete;
    HidgNode& operator= (const HidgNode&) = delete;
    HidgNode (HidgNode&& other) noexcept;
    HidgNode& operator= (HidgNode&&) = delete;

    /** Waits for the node, which udev may be late with, two seconds at most. @returns whether it is open */
    [[nodiscard]] bool open (const std::filesystem::path& node);
    void close();

    /** For poll(): readable when there is a report, writable when the host has fetched the last one; -1 when closed. */
    [[nodiscard]] int handle() const { return descriptor; }

    /** Whether the host has fetched all that was written, as far as it will. */
    [[nodiscard]] bool isFetched() const;

    /** @returns one report; nothing when there is none, or it cannot be read: then errno says why */
    [[nodiscard]] std::optional<std::vector<std::uint8_t>> read() const;

    /** @returns whether the report waits for the host now; a host that has not set the device up gets none */
    [[nodiscard]] bool write (std::span<const std::uint8_t> report) const;

private:
    int descriptor = -1;
};

} // namespace wqv
