// SPDX-License-Identifier: GPL-3.0-or-later
// The simulated HID service, by what every service must do.

#include "HidServiceContract.h"
#include "MessageLoop.h"
#include "SimulatedHidService.h"
#include "VirtualController.h"

namespace wqv
{
namespace
{

class SimulatedWorld
{
public:
    static bool isPossible() { return true; }
    static bool knows (HidService::OpenResult) { return false; }
    static bool canHold() { return false; } // it does, but for five seconds

    HidService& service() { return simulation; }
    void plugIn() { device = simulation.plugIn (&controller); }
    void unplug() { simulation.unplug (device); }
    void refuse (HidService::OpenResult) {}
    void takeNoReport() {}
    std::size_t taken() { return controller.requestCount(); }

    void send (std::vector<std::uint8_t> report)
    {
        juce::MessageManager::callAsync ([this, bytes = std::move (report)] { simulation.deliver (device, bytes); });
    }

    template <typename Condition>
    void runUntil (Condition&& isSo)
    {
        loop.runUntil (isSo);
    }

    void drain() { loop.drain(); }

private:
    MessageLoop loop;
    VirtualController controller;
    SimulatedHidService simulation;
    HidDeviceId device = 0;
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P (Simulated, HidServiceContract, SimulatedWorld);

} // namespace wqv
