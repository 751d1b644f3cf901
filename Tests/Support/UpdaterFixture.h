// SPDX-License-Identifier: GPL-3.0-or-later
// An updater with all that it needs, without window and device.

#pragma once

#include "MessageLoop.h"
#include "PackageWriter.h"
#include "SimulatedHidService.h"
#include "TemporaryFolder.h"
#include "UpdatePackage.h"
#include "Updater.h"
#include "VirtualController.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <numeric>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace wqv
{

/** A package with a block of two pieces, one that is not to be written, and a scrambled one of a piece. */
[[nodiscard]] inline PackageDescription smallPackage (unsigned version = 105)
{
    const auto dataOf = [] (std::size_t size, std::uint8_t first)
    {
        std::vector<std::uint8_t> data (size);
        std::iota (data.begin(), data.end(), first);
        return data;
    };

    PackageDescription package { .version = version, .blocks = {} };
    package.blocks.push_back ({ .id = 1, .data = dataOf (200, 1) });
    package.blocks.push_back ({ .id = 2, .data = dataOf (50, 70), .enabled = false });
    package.blocks.push_back ({ .id = 3, .data = dataOf (100, 140), .scramble = true, .seed = 12345, .keyIndex = 9 });
    return package;
}

/** The codes of the requests that the small package takes. */
inline const std::vector<int> smallUpdate { 0xF4, 0xF0, 0xF1, 0xF3, 0xF3, 0xF1, 0xF3, 0xF2 };

/** Any thread may ask it for the first byte of each request so far; for the rest nobody may while a worker runs. */
class RecordedController final : public VirtualController
{
public:
    using VirtualController::VirtualController;

    [[nodiscard]] std::vector<int> codes() const
    {
        const std::scoped_lock guard (lock);
        return firstBytes;
    }

    [[nodiscard]] Reaction receive (std::span<const std::uint8_t> report) override
    {
        {
            const std::scoped_lock guard (lock);
            firstBytes.push_back (report.front());
        }

        return VirtualController::receive (report);
    }

private:
    mutable std::mutex lock;
    std::vector<int> firstBytes;
};

/** What an updater is given: a message loop, a package file, and a controller that can be plugged in. */
class UpdaterSurroundings
{
public:
    /** @param faults  the controller's fault script
        @param bytes   of the package file; none for no file */
    explicit UpdaterSurroundings (const std::string& faults = {},
                                  const std::vector<std::uint8_t>& bytes = writePackage (smallPackage()))
        : controller (parseFaultScript (faults).value())
    {
        if (! bytes.empty())
            folder.write (packageFileName, bytes);
    }

    /** For one updater, which counts in quits and holds awake. */
    [[nodiscard]] Updater::Host host()
    {
        return { .hidService = service,
                 .folder = packageFolder,
                 .quit = [this] { ++quits; },
                 .keepAwake =
                     [this]
                 {
                     auto held = std::make_shared<bool> (true);
                     awake = held;
                     return held;
                 } };
    }

    void plugIn()
    {
        if (device == 0)
            device = service.plugIn (&controller);
    }

    void unplug()
    {
        if (device != 0)
            service.unplug (std::exchange (device, 0));
    }

    void deliver (std::vector<std::uint8_t> report)
    {
        report.resize (requestSize);
        service.deliver (device, report);
    }

    /** Waits for a first request without the message loop. */
    void waitForFirst() const
    {
        while (controller.codes().empty())
            std::this_thread::yield();
    }

    void runUntilSent (std::size_t count) const
    {
        loop.runUntil ([&] { return controller.codes().size() >= count; });
    }

    MessageLoop loop;
    TemporaryFolder folder;
    std::filesystem::path packageFolder = folder.path(); ///< as the updater is told
    RecordedController controller;
    SimulatedHidService service;
    int quits = 0;             ///< how often the program was asked to end
    std::weak_ptr<bool> awake; ///< lives as long as the machine is kept awake

private:
    HidDeviceId device = 0; ///< 0 while it is not plugged in
};

/** The above, an updater, and a listener that keeps what it is told. */
class UpdaterFixture final : public UpdaterSurroundings, private Updater::Listener
{
public:
    using UpdaterSurroundings::UpdaterSurroundings;

    /** Makes the updater, and leads it to a status by the plug and the buttons. For "updating" and the two that end an
        update the fault script has to fit; "updating" includes the first request. */
    void reach (UpdaterStatus_t wanted)
    {
        if (wanted >= UPDATER_STATUS_READY)
            plugIn();

        updater.emplace (host(), static_cast<Updater::Listener&> (*this));

        if (wanted >= UPDATER_STATUS_NOT_CONNECTED)
            pressOk();

        if (wanted >= UPDATER_STATUS_UPDATING)
        {
            pressOk();
            runUntil (wanted);
            runUntilSent (1);
        }
    }

    void runUntil (UpdaterStatus_t wanted)
    {
        loop.runUntil ([&] { return updater->status() == wanted; });
    }

    void pressOk() { updater->confirm(); }
    void pressCancel() { updater->leave(); }

    std::vector<UpdaterStatus_t> shown; ///< each status that the listener was told of
    std::function<void()> whenShown = [] {};
    std::optional<Updater> updater;

private:
    void updaterChanged() override
    {
        shown.push_back (updater->status());
        whenShown();
    }
};

} // namespace wqv
