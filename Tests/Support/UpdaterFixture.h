// SPDX-License-Identifier: GPL-3.0-or-later
// An updater with all that it needs, without window and device.

#pragma once

#include "MessageLoop.h"
#include "PackageWriter.h"
#include "RequestRecorder.h"
#include "SimulatedHidService.h"
#include "TemporaryFolder.h"
#include "Updater.h"
#include "VirtualController.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

namespace wqv
{

/** A package with a block of two pieces, one that is not to be written, and a scrambled one of a piece. */
[[nodiscard]] PackageDescription smallPackage (unsigned version = 105);

/** The codes of the requests that the small package takes. */
inline const std::vector<int> smallUpdate { 0xF4, 0xF0, 0xF1, 0xF3, 0xF3, 0xF1, 0xF3, 0xF2 };

/** What an updater is given: a message loop, a package file, and a controller that can be plugged in. */
class UpdaterSurroundings
{
public:
    /** @param faults  the controller's fault script
        @param bytes   of the package file; none for no file */
    explicit UpdaterSurroundings (const std::string& faults = {},
                                  const std::vector<std::uint8_t>& bytes = writePackage (smallPackage()));

    /** For one updater, which counts in quits. */
    [[nodiscard]] Updater::Host host();

    void plugIn();
    void unplug();
    void deliver (std::vector<std::uint8_t> report);
    void runUntilSent (std::size_t count) const;

    MessageLoop loop;
    TemporaryFolder folder;
    std::filesystem::path packageFolder = folder.path(); ///< as the updater is told
    VirtualController controller;                        ///< not to be looked at while a worker runs
    SimulatedHidService service;
    RequestRecorder requests { service };
    int quits = 0; ///< how often the program was asked to end

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
    void reach (UpdaterStatus_t wanted);

    void runUntil (UpdaterStatus_t wanted);
    void pressOk() { updater->confirm(); }
    void pressCancel() { updater->leave(); }

    std::vector<UpdaterStatus_t> shown; ///< each status that the listener was told of
    std::function<void()> whenShown = [] {};
    std::optional<Updater> updater;

private:
    void updaterChanged() override;
};

} // namespace wqv
