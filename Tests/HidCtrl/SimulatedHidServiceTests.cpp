// SPDX-License-Identifier: GPL-3.0-or-later
// The simulated HID service, by what every service must do.

#include "HidServiceContract.h"
#include "SimulatedHidService.h"
#include "VirtualController.h"

namespace wqv
{
namespace
{

class SimulatedWorld : public UsualWorld
{
public:
    HidService& service() { return simulation; }
    void plugIn() { device = simulation.plugIn (&controller); }
    void unplug() { simulation.unplug (device); }
    std::size_t taken() { return controller.requestCount(); }

    void send (std::vector<std::uint8_t> report)
    {
        juce::MessageManager::callAsync ([this, bytes = std::move (report)] { simulation.deliver (device, bytes); });
    }

private:
    VirtualController controller;
    SimulatedHidService simulation;
    HidDeviceId device = 0;
};

} // namespace

INSTANTIATE_TYPED_TEST_SUITE_P (Simulated, HidServiceContract, SimulatedWorld);

} // namespace wqv
