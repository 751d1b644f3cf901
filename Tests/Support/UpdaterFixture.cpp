// SPDX-License-Identifier: GPL-3.0-or-later
// Plugging in, pressing buttons, running the loop.

#include "UpdaterFixture.h"

#include "UpdatePackage.h"

#include <numeric>
#include <utility>

namespace wqv
{

PackageDescription smallPackage (unsigned version)
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

UpdaterSurroundings::UpdaterSurroundings (const std::string& faults, const std::vector<std::uint8_t>& bytes)
    : controller (parseFaultScript (faults).value())
{
    if (! bytes.empty())
        folder.write (packageFileName, bytes);
}

Updater::Host UpdaterSurroundings::host()
{
    return { .hidService = requests, .folder = packageFolder, .quit = [this] { ++quits; } };
}

void UpdaterSurroundings::plugIn()
{
    if (device == 0)
        device = service.plugIn (&controller);
}

void UpdaterSurroundings::unplug()
{
    if (device != 0)
        service.unplug (std::exchange (device, 0));
}

void UpdaterSurroundings::deliver (std::vector<std::uint8_t> report)
{
    report.resize (requestSize);
    service.deliver (device, report);
}

void UpdaterSurroundings::runUntilSent (std::size_t count) const
{
    loop.runUntil ([&] { return requests.codes().size() >= count; });
}

void UpdaterFixture::reach (UpdaterStatus_t wanted)
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

void UpdaterFixture::runUntil (UpdaterStatus_t wanted)
{
    loop.runUntil ([&] { return updater->status() == wanted; });
}

void UpdaterFixture::updaterChanged()
{
    shown.push_back (updater->status());
    whenShown();
}

} // namespace wqv
