// SPDX-License-Identifier: GPL-3.0-or-later
// A virtual controller behind a hidraw node.

#pragma once

#include "TestBed.h"
#include "VirtualController.h"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <mutex>
#include <span>
#include <string>
#include <sys/types.h>
#include <vector>

namespace wqv
{

/** The node behaves as the kernel's: one report a read, output reports after a report id of 0, 63 input reports kept,
    and a descriptor from before an unplug is dead for ever. What the controller does about a request it does at once,
    whatever the delay.

    The verbs are for one thread. The program reads and writes in any thread and process; it is answered by a thread of
    the test bed, which also calls the controller and its log.
*/
class MockController
{
public:
    MockController (TestBed& bedToUse, UsbHid descriptionToUse, FaultScript faults = {});
    ~MockController();

    MockController (const MockController&) = delete;
    MockController& operator= (const MockController&) = delete;

    /** Makes the node, then the device. */
    void plugIn();

    /** Ends the node, then takes the device away. */
    void unplug();

    /** The two halves of unplug(). */
    void hangUp();
    void remove();

    /** Sets who may use the node, while it is plugged in. */
    void setMode (mode_t mode) const;

    /** Makes it seem that the node's attributes have changed: those of what stands in its place are elsewhere. */
    void touch() const;

    /** Locks the node, as another updater does; false if somebody has locked it already. */
    [[nodiscard]] bool lockNode() const;
    void unlockNode() const;

    /** Sends input reports of the controller's own accord. */
    void send (std::span<const std::vector<std::uint8_t>> reports);

    VirtualController controller; ///< not to be looked at while the program is sending

private:
    static void clientConnected (UMockdevIoctlBase* base, UMockdevIoctlClient* client, MockController* self);
    static gboolean read (UMockdevIoctlBase* base, UMockdevIoctlClient* client, MockController* self);
    static gboolean write (UMockdevIoctlBase* base, UMockdevIoctlClient* client, MockController* self);

    [[nodiscard]] bool isAlive (UMockdevIoctlClient* client) const;
    [[nodiscard]] int take (std::span<const std::uint8_t> bytes);
    void makeNode();
    void endNode();
    void attach();
    void enqueue (const std::vector<std::uint8_t>& report);
    void awaitConnections() const;

    TestBed& bed;
    UsbHid description;
    std::unique_ptr<UMockdevIoctlBase, ObjectRelease> handlers;

    std::mutex lock;         ///< guards what follows, and the controller
    unsigned generation = 0; ///< of the node; descriptors of another one are dead
    int terminal = -1;       ///< a pseudo-terminal in the node's place, only to wake who waits for reports
    int nodesEnd = -1;       ///< its other end, as the program opens it
    std::deque<std::vector<std::uint8_t>> reports;
};

} // namespace wqv
