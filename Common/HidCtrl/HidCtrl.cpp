// SPDX-License-Identifier: GPL-3.0-or-later
// The device session: what each event of the device does to its state (no device, connected, request sent).

#include "HidCtrl.h"

#include <algorithm>

namespace wqv
{

HidCtrl::HidCtrl (HidService& service) : m_service (service) {}

HidCtrl::~HidCtrl()
{
    finalize();
}

bool HidCtrl::initialize (HidHandler& handler, std::int32_t mode)
{
    m_handler = &handler;
    m_hidUtil = std::make_unique<HidUtil> (m_service);
    m_state = noDevice;
    m_version = 0;
    m_inputBuffer.fill (0);
    m_inputLength = 0;

    if (! m_hidUtil->initialize (*this, mode))
    {
        finalize();
        return false;
    }

    if (m_hidUtil->deviceMatching())
    {
        m_state = connected;
        readDevice();
    }

    return true;
}

void HidCtrl::finalize()
{
    // First, so that the handler hears nothing of the transport's end.
    m_handler = nullptr;
    m_hidUtil.reset();
}

bool HidCtrl::deviceMatching()
{
    return m_hidUtil != nullptr && m_hidUtil->deviceMatching();
}

std::int32_t HidCtrl::deviceVersion() const
{
    return m_hidUtil != nullptr ? m_hidUtil->deviceVersion() : 0;
}

std::uint32_t HidCtrl::deviceInput (std::span<std::uint8_t> buffer) const
{
    std::ranges::fill (buffer, std::uint8_t { 0 });
    return m_hidUtil != nullptr ? m_hidUtil->deviceInput (buffer) : 0;
}

void HidCtrl::readPending()
{
    if (m_hidUtil != nullptr)
        m_hidUtil->readPending();
}

bool HidCtrl::setData (std::span<const std::uint8_t> report)
{
    // The message thread may just have noted a removal, which "request sent" must not overwrite.
    auto seen = static_cast<std::int32_t> (connected);
    m_state.compare_exchange_strong (seen, requestSent);

    return seen != noDevice && deviceOutput (report);
}

bool HidCtrl::deviceOutput (std::span<const std::uint8_t> report)
{
    return m_hidUtil != nullptr && m_hidUtil->deviceOutput (report);
}

void HidCtrl::matchingCallBack()
{
    m_state = connected;
    readDevice();

    if (m_handler != nullptr)
        m_handler->matchingCallBack();
}

void HidCtrl::removalCallBack()
{
    // The state changes before the search, so that a request that another thread sends meanwhile is refused.
    if (m_state.exchange (noDevice) == connected && m_hidUtil->deviceMatching())
    {
        matchingCallBack();
        return;
    }

    m_version = 0;
    m_inputBuffer.fill (0);
    m_inputLength = 0;

    if (m_handler != nullptr)
        m_handler->removalCallBack();
}

void HidCtrl::inputCallBack()
{
    ReportBuffer report;
    const auto length = deviceInput (report);

    // What lies behind the report stays as it was: the length tells where the report ends.
    std::copy_n (report.begin(), length, m_inputBuffer.begin());
    m_inputLength = length;

    if (m_handler != nullptr)
        m_handler->inputCallBack();
}

/** Takes over version and report of the device that has just been matched. */
void HidCtrl::readDevice()
{
    m_version = m_hidUtil->deviceVersion();
    m_inputLength = deviceInput (m_inputBuffer);
}

} // namespace wqv
