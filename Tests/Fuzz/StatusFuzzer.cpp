// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the updater's status machine: presses, plugs, reports, rounds of the message loop and steps of the worker, in any order,
// with a good package or none. JUCE is a stand-in, and so is the worker, which does what the input says.

#include "FakeHidService.h"
#include "Fuzz.h"
#include "PackageWriter.h"
#include "TemporaryFolder.h"
#include "UpdateWorker.h"
#include "Updater.h"

#include <optional>

namespace wqv
{
namespace
{

/** What the worker does next, and what has been seen of it. */
struct Worker
{
    enum class Act
    {
        send,
        wait,
        complete,
        fail
    };

    UpdateWorker* thread = nullptr;
    Act next = Act::send;
    bool hasBegun = false;
    bool hasInterruption = false;                      ///< that it was not told of yet
    UpdaterStatus_t outcome = UPDATER_STATUS_UPDATING; ///< none yet
    double progress = 0.0;
};

Worker worker;

} // namespace

UpdateWorker::UpdateWorker (Context contextToUse) : Thread ("UpdateWorker"), context (std::move (contextToUse))
{
    worker = { .thread = this };
}

UpdateWorker::~UpdateWorker()
{
    stop();
}

void UpdateWorker::stop()
{
    context.mailbox.stop();
    worker.next = Worker::Act::fail;

    while (isRunning)
        run();
}

/** One step of the thread. */
void UpdateWorker::run()
{
    if (! std::exchange (worker.hasBegun, true))
        context.post (UPDATER_STATUS_UPDATING);
    else if (worker.next == Worker::Act::send)
        std::ignore = send (enterUpdateModeRequest());
    else if (worker.next == Worker::Act::wait)
        std::ignore = wait ({});
    else
    {
        worker.outcome = worker.next == Worker::Act::fail ? UPDATER_STATUS_ERROR : UPDATER_STATUS_COMPLETE;
        context.post (worker.outcome);
        isRunning = false;
    }
}

bool UpdateWorker::send (const Request& request)
{
    context.progress = worker.progress += 0.25;
    return context.hidCtrl.setData (request);
}

Answer UpdateWorker::wait (std::chrono::milliseconds limit)
{
    const auto askForTurn = [this]
    {
        context.askForTurn();
        juce::AsyncUpdater::drain();
    };

    const auto answer = context.mailbox.wait (limit, askForTurn);
    expect (answer.signalled || ! worker.hasInterruption, "the worker hears of every interruption");
    worker.hasInterruption = worker.hasInterruption && ! answer.interrupted;
    return answer;
}

// What only the sequence asks for.
void UpdateWorker::reportProgress (double /*fraction*/) {}
void UpdateWorker::pause (std::chrono::milliseconds /*duration*/) {}

bool UpdateWorker::stopRequested() const
{
    return false;
}

namespace
{

const TemporaryFolder folder;
const auto goodPackage =
    folder.write ("good", writePackage ({ .version = 105, .blocks = { { .id = 1, .data = { 1, 2, 3 } } } }));

/** An updater, its surroundings, and what is known of both. */
class Machine final : private Updater::Listener
{
public:
    /** @param hasPackage  a good one; one that is not good is none */
    explicit Machine (bool hasPackage) : isGood (hasPackage)
    {
        updater.emplace (Updater::Host { .hidService = service,
                                         .folder = {},
                                         .quit = [this] { ++quits; },
                                         .package = isGood ? goodPackage : "",
                                         .keepAwake = [this] { return keepAwake(); } },
                         static_cast<Updater::Listener&> (*this));
        expect (shown == 0, "the listener is not called while the updater is made");
        expect (updater->packageValid() == isGood, "the package is what it is");
    }

    void play (Input& input)
    {
        const unsigned byte = input.byte();
        const auto event = byte % 16;
        const auto value = byte / 16;

        switch (event)
        {
            case 0: plugIn (value); break;
            case 1: unplug(); break;
            case 2: report ({ input.byte(), input.byte() }); break;
            case 3: confirm(); break;
            case 4: leave(); break;
            case 5: juce::AsyncUpdater::dispatch(); break;
            case 6: settle(); break;
            case 7:
            case 8:
            case 9:
            case 10: work (static_cast<Worker::Act> (event - 7)); break;
            case 11: abandon(); break;
            case 12: juce::Thread::canStart = value % 2 == 0; break;
            case 13: pressesWhenShown = value % 2 == 0; break;
            default: break;
        }

        check();
    }

    void end()
    {
        updater->abandon();
        const auto shownAtEnd = shown;
        updater.reset();
        juce::AsyncUpdater::dispatch();
        expect (shown == shownAtEnd, "a deleted updater calls nobody");
        expect (awake.expired(), "a deleted updater keeps nothing awake");
        expect (service.listener == nullptr && std::ranges::is_permutation (service.closed, service.opened),
                "every device that was opened is closed");
    }

private:
    void plugIn (unsigned kind)
    {
        if (device != 0)
            return;

        auto description = FakeHidService::controller (++lastDevice);
        description.versionNumber = static_cast<std::int32_t> (0x0100 + kind % 8);

        device = description.id;
        version = isGood ? static_cast<std::int32_t> (100 + kind % 8) : -1;
        interruptIf (version != -1);
        service.plugIn (description);
    }

    void unplug()
    {
        interruptIf (version != -1);
        version = -1;

        if (const auto gone = std::exchange (device, 0); gone != 0)
            service.unplug (gone);
    }

    void interruptIf (bool isSo) { worker.hasInterruption = worker.hasInterruption || (isSo && isRunning()); }

    void report (std::vector<std::uint8_t> bytes)
    {
        if (version != -1)
            service.deliver (std::move (bytes));
    }

    void confirm()
    {
        const auto status = updater->status();
        const auto startsBefore = juce::Thread::starts;

        if (status != UPDATER_STATUS_START && ! (status == UPDATER_STATUS_READY && isGood))
            isLeaving = true;

        updater->confirm();

        expect (juce::Thread::starts == startsBefore || (status <= UPDATER_STATUS_READY && isGood && ! isLeaving),
                "an update starts where it is offered");
        couldNotStart = couldNotStart || (status == UPDATER_STATUS_READY && ! juce::Thread::canStart);
    }

    void leave()
    {
        isLeaving = true;
        updater->leave();
    }

    void work (Worker::Act act)
    {
        worker.next = act;

        if (isRunning())
            worker.thread->run();
    }

    void abandon()
    {
        const auto shownBefore = shown;
        const auto quitsBefore = quits;
        updater->abandon();
        expect (! isRunning(), "an update that is abandoned has ended");
        expect (shown == shownBefore && quits == quitsBefore, "abandon() calls neither listener nor host");
    }

    void settle()
    {
        juce::AsyncUpdater::drain();

        // Where nothing is under way, the screen is that of the device.
        const auto status = updater->status();

        if (status == UPDATER_STATUS_NOT_CONNECTED || status == UPDATER_STATUS_READY)
            if (isGood && ! isRunning())
                expect (status == (version != -1 ? UPDATER_STATUS_READY : UPDATER_STATUS_NOT_CONNECTED)
                            && updater->deviceVersion() == version,
                        "the status follows the controller");
    }

    void check() const
    {
        const auto status = updater->status();
        expect (status == lastShown, "the listener hears of each change");
        expect (juce::Thread::starts <= 1, "the worker starts once");
        expect (awake.expired() == (status != UPDATER_STATUS_UPDATING), "the machine is awake while updating");
        expect (quits == (isLeaving ? 1 : 0), "the program is ended once, and by the user");
        expect (status <= UPDATER_STATUS_UPDATING || status == worker.outcome
                    || (status == UPDATER_STATUS_ERROR && couldNotStart),
                "complete or failed only if the worker says so, or cannot be started");
        expect (updater->deviceVersion() == -1 || updater->deviceVersion() >= 100, "a version is known or it is not");
        expect (isGood || service.opened.empty(), "without a good package no device is opened");
        expect (updater->progress() == worker.progress, "the progress is the worker's");
    }

    [[nodiscard]] bool mayFollow (UpdaterStatus_t from, UpdaterStatus_t to) const
    {
        if (from == to)
            return true;

        if (from >= UPDATER_STATUS_COMPLETE || to == UPDATER_STATUS_START
            || (! isGood && (from != UPDATER_STATUS_START || to != UPDATER_STATUS_NOT_CONNECTED)))
            return false;

        return from == UPDATER_STATUS_UPDATING ? to > from : from != UPDATER_STATUS_START || to <= UPDATER_STATUS_READY;
    }

    void updaterChanged() override
    {
        ++shown;
        expect (mayFollow (lastShown, updater->status()), "the status changes as it may");
        lastShown = updater->status();

        if (std::exchange (pressesWhenShown, false))
            confirm();
    }

    std::shared_ptr<void> keepAwake()
    {
        expect (awake.expired(), "the machine is kept awake once");
        const auto held = std::make_shared<bool> (true);
        awake = held;
        return held;
    }

    static bool isRunning() { return worker.thread->isThreadRunning(); }

    bool isGood;
    FakeHidService service;
    int shown = 0; ///< how often the listener was called
    int quits = 0;
    bool isLeaving = false;
    bool couldNotStart = false;
    bool pressesWhenShown = false;
    std::weak_ptr<void> awake;
    HidDeviceId device = 0; ///< 0 while none is plugged in
    HidDeviceId lastDevice = 0;
    std::int32_t version = -1; ///< of the controller that can be used
    UpdaterStatus_t lastShown = UPDATER_STATUS_START;
    std::optional<Updater> updater;
};

} // namespace
} // namespace wqv

int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    wqv::Input input ({ data, size });
    juce::Thread::canStart = true;
    juce::Thread::starts = 0;
    wqv::Machine machine (input.byte() % 2 == 0);

    while (! input.isOver())
        machine.play (input);

    machine.end();
    return 0;
}
