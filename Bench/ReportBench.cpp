// SPDX-License-Identifier: GPL-3.0-or-later
// The host's own time per report: an update by the engine over a socket pair, and a bare loop over the same.

#include "DeviceIds.h"
#include "HidService.h"
#include "HidrawConnection.h"
#include "MessageLoop.h"
#include "PackageWriter.h"
#include "Requests.h"
#include "SocketController.h"
#include "TemporaryFolder.h"
#include "Unseen.h"
#include "Updater.h"
#include "VirtualController.h"

#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <fcntl.h>
#include <memory>
#include <poll.h>
#include <span>
#include <unistd.h>
#include <utility>
#include <vector>

namespace wqv
{
namespace
{

constexpr auto dataCode = static_cast<std::uint8_t> (RequestCode::blockData);
constexpr std::size_t reportCount = 10'000;

/** One device, whose node is a socket. */
class SocketHidService final : public HidService
{
public:
    explicit SocketHidService (int descriptorToUse) : descriptor (descriptorToUse) {}

    std::vector<HidDevice> devices() override
    {
        return { { .id = 1, .vendorId = kVendorId, .productId = HidDeviceType[1], .versionNumber = 0x0100 } };
    }

    void setListener (Listener* newListener) override { listener = newListener; }

    Opened open (HidDeviceId device, ReportBuffer& buffer) override
    {
        // As a node is opened: the connection reads until there is nothing more.
        fcntl (descriptor, F_SETFL, O_NONBLOCK);
        const auto connection = std::make_shared<HidrawConnection> (dup (descriptor));

        connection->startInput (
            buffer,
            [this, device] (std::size_t length) { listener->reportReceived (device, length); },
            [this, device] { listener->deviceRemoved (device); });

        return { .result = OpenResult::ok, .connection = connection };
    }

private:
    int descriptor;
    Listener* listener = nullptr;
};

/** Publishes what a controller measured. */
void report (benchmark::State& state, SocketController& controller)
{
    const auto times = controller.takeTimes();

    if (times.empty())
    {
        state.SkipWithError ("nothing was measured");
        return;
    }

    const auto microseconds = [&times] (std::size_t percent)
    { return static_cast<double> (times[(times.size() - 1) * percent / 100].count()) / 1000.0; };

    state.SetIterationTime (microseconds (50) / 1e6);
    state.counters["median_us"] = microseconds (50);
    state.counters["p99_us"] = microseconds (99);
    state.counters["reports"] = static_cast<double> (times.size());
    state.counters["allocations"] = static_cast<double> (controller.allocationsMeanwhile());
}

/** An update as the program does it, but without a window. */
void engine (benchmark::State& state)
{
    const MessageLoop loop;
    const TemporaryFolder folder;
    const std::vector<std::uint8_t> firmware (reportCount * pieceSize, 0x5A);
    folder.write ("WQV-KRV20_UP.upd", writePackage ({ .version = 105, .blocks = { { .id = 1, .data = firmware } } }));

    while (state.KeepRunning())
    {
        VirtualController device;
        std::vector<std::uint8_t> answer;

        SocketController controller (dataCode,
                                     [&] (std::span<const std::uint8_t> request)
                                     {
                                         const auto reaction = device.receive (request);
                                         device.happens (reaction.events.at (0));
                                         answer = reaction.events.at (0).report;
                                         return std::span<const std::uint8_t> (answer);
                                     });
        const auto hostEnd = controller.takeHostEnd();

        {
            SocketHidService service (hostEnd);
            Unseen listener;
            Updater updater ({ .hidService = service, .folder = folder.path(), .quit = [] {} }, listener);
            updater.confirm();
            updater.confirm();
            loop.runUntil ([&updater] { return updater.status() > UPDATER_STATUS_UPDATING; });

            if (updater.status() != UPDATER_STATUS_COMPLETE)
                state.SkipWithError ("the update failed");
        }

        close (hostEnd);
        report (state, controller);
    }
}

/** What no program can do with less: one thread that waits, reads and writes. */
void bareLoop (benchmark::State& state)
{
    while (state.KeepRunning())
    {
        std::size_t answers = 0;
        const std::array<std::uint8_t, requestSize> answer {};

        SocketController controller (
            dataCode, [&] (auto) { return std::span (answer).first (++answers <= reportCount ? answer.size() : 0); });
        const auto hostEnd = controller.takeHostEnd();

        std::array<std::uint8_t, 1 + requestSize> request {};
        request[1] = dataCode;
        std::array<std::uint8_t, 1024> buffer {};

        for (std::size_t sent = 0; sent <= reportCount; ++sent)
        {
            pollfd ready { .fd = hostEnd, .events = POLLIN, .revents = 0 };

            if (write (hostEnd, request.data(), request.size()) < 0 || (sent < reportCount && poll (&ready, 1, -1) != 1)
                || (sent < reportCount && read (hostEnd, buffer.data(), buffer.size()) < 0))
                state.SkipWithError ("the pair failed");
        }

        close (hostEnd);
        report (state, controller);
    }
}

BENCHMARK (bareLoop)
    ->Name ("hostPerReport/bareLoop")
    ->UseManualTime()
    ->Iterations (1)
    ->Repetitions (5)
    ->Unit (benchmark::kMicrosecond);
BENCHMARK (engine)
    ->Name ("hostPerReport/engine")
    ->UseManualTime()
    ->Iterations (1)
    ->Repetitions (5)
    ->Unit (benchmark::kMicrosecond);

} // namespace
} // namespace wqv
