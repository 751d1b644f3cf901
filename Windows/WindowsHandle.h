// SPDX-License-Identifier: GPL-3.0-or-later
// Owners of handles of Windows's.

#pragma once

#include <windows.h>

#include <utility>

namespace wqv
{

/** Closes a handle at its end. */
class WindowsHandle
{
public:
    WindowsHandle() = default;

    /** @param handleToOwn  null and INVALID_HANDLE_VALUE are none */
    explicit WindowsHandle (HANDLE handleToOwn) : handle (handleToOwn) {}

    ~WindowsHandle()
    {
        if (isValid())
            CloseHandle (handle);
    }

    WindowsHandle (WindowsHandle&& other) noexcept : handle (std::exchange (other.handle, nullptr)) {}

    WindowsHandle& operator= (WindowsHandle&& other) noexcept
    {
        std::swap (handle, other.handle);
        return *this;
    }

    WindowsHandle (const WindowsHandle&) = delete;
    WindowsHandle& operator= (const WindowsHandle&) = delete;

    [[nodiscard]] HANDLE get() const { return handle; }
    [[nodiscard]] bool isValid() const { return handle != nullptr && handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE handle = nullptr;
};

} // namespace wqv
