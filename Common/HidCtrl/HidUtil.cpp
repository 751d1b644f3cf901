// SPDX-License-Identifier: GPL-3.0-or-later
// The transport: chooses among the devices of any system's HID service, opens one, sends and receives.

#include "HidUtil.h"

#include "DeviceIds.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace wqv
{
namespace
{

/** How long a request is, without its report id. */
constexpr std::uint32_t requestLength = 128;

/** Sorts the interfaces of one device by what they lack for the conversation. A way for requests weighs more than one
    for answers. */
auto shortcomings (const HidDevice& device)
{
    return std::tuple (device.outputReportLength != requestLength, device.inputReportLength == 0);
}

/** Sorts devices by where they are plugged in, and the interfaces of one device by how well they fit. */
auto preference (const HidDevice& device)
{
    return std::tuple (device.location, shortcomings (device), device.interfaceNumber);
}

} // namespace

HidUtil::HidUtil (HidService& service) : m_service (service) {}

HidUtil::~HidUtil()
{
    finalize();
}

bool HidUtil::initialize (HidHandler& handler, std::int32_t mode)
{
    if (m_pinstance != nullptr)
        return false;

    m_pinstance = this;
    m_handler = &handler;
    m_mode = mode;
    rebuildDeviceList (0);
    return true;
}

void HidUtil::finalize()
{
    if (m_pinstance != this)
        return;

    deviceRemoval();
    m_devices.clear();
    m_inUse.reset();
    m_service.setListener (nullptr);
    m_matchingRegistered = false;
    m_pinstance = nullptr;
    m_handler = nullptr;
}

bool HidUtil::deviceMatching()
{
    if (m_pinstance != this)
        return false;

    // Only before a search: a service tells of each new device either in the list or by a callback, so nobody would see
    // a device in a list that is not searched.
    if (! m_device && m_leaving != 0)
        rebuildDeviceList (std::exchange (m_leaving, 0));

    const auto found =
        m_device.has_value() || std::ranges::any_of (m_devices, [this] (const auto& d) { return checkID (d); });

    registerDeviceMatching();
    return found;
}

std::int32_t HidUtil::deviceVersion() const
{
    if (! m_device)
        return 0;

    const auto version = m_device->versionNumber;
    return version / 4096 * 1000 + version % 4096 / 256 * 100 + version % 256 / 16 * 10 + version % 16;
}

std::uint32_t HidUtil::deviceInput (std::span<std::uint8_t> buffer) const
{
    if (! m_device)
        return 0;

    const auto count = std::min<std::size_t> (m_reportLength, buffer.size());
    std::copy_n (m_reportBuffer.begin(), count, buffer.begin());
    return static_cast<std::uint32_t> (count);
}

void HidUtil::readPending()
{
    // A report may lead to anything, the end of the connection included.
    if (const auto connection = m_connection)
        connection->readPending();
}

bool HidUtil::deviceOutput (std::span<const std::uint8_t> report)
{
    std::shared_ptr<HidConnection> connection;

    {
        const std::scoped_lock guard (m_connectionLock);

        // A device may do anything with a report that is not one of its own.
        if (report.empty() || (m_outputReportLength != 0 && report.size() != m_outputReportLength))
            return false;

        connection = m_connection;
        m_isUsed = true;
    }

    return connection != nullptr && connection->send (report);
}

bool HidUtil::deviceRemoval()
{
    if (! m_device)
        return false;

    std::shared_ptr<HidConnection> connection;

    {
        const std::scoped_lock guard (m_connectionLock);
        connection = std::exchange (m_connection, nullptr);
    }

    connection->stopInput();
    m_device.reset();
    m_reportBuffer.fill (0);
    m_reportLength = 0;
    return true;
}

void HidUtil::deviceAttached (const HidDevice& device)
{
    if (checkID (device))
        m_handler->matchingCallBack();
}

void HidUtil::deviceRemoved (HidDeviceId device)
{
    if (m_inUse && m_inUse->id == device)
        m_inUse.reset();

    if (! m_device || m_device->id != device)
        return;

    deviceRemoval();
    m_leaving = device;
    m_handler->removalCallBack();
}

void HidUtil::reportReceived (HidDeviceId device, std::size_t length)
{
    if (! m_device || m_device->id != device)
        return;

    m_reportLength = static_cast<std::uint32_t> (std::min (length, reportBufferSize));
    m_handler->inputCallBack();
}

bool HidUtil::checkID (const HidDevice& device)
{
    const auto product = HidDeviceType.at (m_mode != 0 ? 1 : 0);

    if (product == 0 || device.vendorId != kVendorId || device.productId != product)
        return false;

    if (m_device && ! isBetterInterface (device))
        return false;

    // Whoever holds a better interface of a controller holds the controller.
    if (m_inUse && m_inUse->location == device.location && preference (*m_inUse) < preference (device))
        return false;

    auto [result, connection] = m_service.open (device.id, m_reportBuffer);

    if (result == HidService::OpenResult::inUse)
    {
        m_inUse = device;

        if (deviceRemoval())
            m_handler->removalCallBack();
    }

    if (result != HidService::OpenResult::ok)
        return false;

    // While it was being opened, another thread may have sent something to the device that is held.
    if (m_device && ! isBetterInterface (device))
    {
        connection->stopInput();
        return false;
    }

    deviceRemoval();
    m_device = device;
    m_inUse.reset();
    const std::scoped_lock guard (m_connectionLock);
    m_connection = std::move (connection);
    m_outputReportLength = device.outputReportLength;
    m_isUsed = false;
    return true;
}

/** Whether a device is a better interface of the one that is held. The system shows the interfaces one by one, and each
    may be closed to the user for a moment, so the first that can be opened need not be the right one: a controller that
    starts in update mode is sent a request the moment one of them is there. */
bool HidUtil::isBetterInterface (const HidDevice& device)
{
    if (device.location != m_device->location)
        return false;

    const std::scoped_lock guard (m_connectionLock);
    return m_isUsed ? shortcomings (device) < shortcomings (*m_device) : preference (device) < preference (*m_device);
}

void HidUtil::registerDeviceMatching()
{
    if (! std::exchange (m_matchingRegistered, true))
        m_service.setListener (this);
}

void HidUtil::rebuildDeviceList (HidDeviceId leaving)
{
    m_devices = m_service.devices();
    std::erase_if (m_devices, [leaving] (const auto& device) { return device.id == leaving; });
    std::ranges::sort (m_devices, {}, preference);
}

} // namespace wqv
