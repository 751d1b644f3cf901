// SPDX-License-Identifier: GPL-3.0-or-later
// The HID service of Windows under Wine, on a real kernel with a USB device that takes orders (Tests/Linux/UsbDeviceMain.cpp),
// by what every service must do: script/try-kernel runs it. The files for orders and answers are those that WQV_ORDERS and
// WQV_ANSWERS name.

#include "HidServiceContract.h"

#include "HidInterface.h"
#include "WindowsHidService.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

namespace wqv
{
namespace
{

using namespace std::chrono_literals;

/** Wine opens whatever the user may, as often as it is asked to. */
class WindowsWorld : public UsualWorld
{
public:
    ~WindowsWorld() { unplug(); }

    static bool isPossible() { return std::getenv ("WQV_ORDERS") != nullptr; }

    HidService& service() { return hidService; }

    /** Returns when Wine has it. */
    void plugIn()
    {
        order ("plug");

        while (std::ranges::none_of (presentHidInterfaces(),
                                     [] (const auto& path) { return path.find (L"vid_1209") != std::wstring::npos; }))
            std::this_thread::sleep_for (10ms);
    }

    void unplug() { order ("unplug"); }
    void send (const std::vector<std::uint8_t>& report) { order ("send " + std::to_string (report.front())); }
    std::size_t taken() { return order ("taken") - takenBefore; }

    /** News of a device is no message that the loop would return for. */
    template <typename Condition>
    void runUntil (Condition&& isSo)
    {
        for (; ! isSo(); std::this_thread::sleep_for (10ms))
            MessageLoop::drain();
    }

    /** Wine says nowhere that it has nothing more to tell. */
    void drain()
    {
        const auto end = std::chrono::steady_clock::now() + 2s;
        runUntil ([end] { return std::chrono::steady_clock::now() > end; });
    }

private:
    /** Returns when it is done. @returns the answer: how many reports the device has taken in all */
    static std::size_t order (const std::string& text)
    {
        static std::size_t lines = 0;
        std::ofstream (std::getenv ("WQV_ORDERS"), std::ios::app | std::ios::binary) << text << '\n';
        ++lines;

        for (;; std::this_thread::sleep_for (10ms))
        {
            std::ifstream answers (std::getenv ("WQV_ANSWERS"), std::ios::binary);
            std::string last;
            std::size_t count = 0;

            for (std::string line; std::getline (answers, line) && ! answers.eof(); ++count)
                last = line;

            if (count == lines)
                return std::stoul (last);
        }
    }

    WindowsHidService hidService;
    const std::size_t takenBefore = order ("taken");
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P (Windows, HidServiceContract, WindowsWorld);

} // namespace wqv
