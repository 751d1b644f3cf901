// SPDX-License-Identifier: GPL-3.0-or-later
// The steps of an update as text for people.

#include "EscapedText.h"
#include "FaultText.h"
#include "Output.h"
#include "Reporter.h"

#include <algorithm>
#include <utility>

namespace wqv
{
namespace
{

class PlainReporter final : public Reporter
{
public:
    PlainReporter (Output& outputToUse, bool isTerminalToUse) : output (outputToUse), isTerminal (isTerminalToUse) {}

    void devices (const std::vector<DeviceRoster::Entry>& entries, const std::optional<HidDevice>& chosen) override
    {
        std::string text = entries.empty() ? "no HID devices\n" : "";

        for (const auto& entry : entries)
        {
            const auto& device = entry.device;
            text += hexadecimal (device.vendorId, 4) + ":" + hexadecimal (device.productId, 4) + " version "
                    + hexadecimal (device.versionNumber, 4) + ", interface " + std::to_string (device.interfaceNumber)
                    + ", reports in " + std::to_string (device.inputReportLength) + " and out "
                    + std::to_string (device.outputReportLength) + " bytes: " + describe (entry, chosen) + "\n";
        }

        output.print (std::move (text));
    }

    void waiting (const std::string& reason) override
    {
        closeLine();
        output.print ("waiting for a controller: " + reason + "\n");
    }

    void versions (std::int32_t ofController, std::int32_t ofPackage, int number) override
    {
        closeLine();
        output.print (numbered (number) + "firmware of the controller: " + versionText (ofController)
                      + ", of the package: " + versionText (ofPackage) + "\n");
        shown = -1;
    }

    void question() override
    {
        output.print ("Update? [y/N] ");
        isLineOpen = true;
    }

    void answered() override { isLineOpen = false; }

    void progress (double fraction) override
    {
        constexpr int step = 10;
        const auto percent = static_cast<int> (std::clamp (fraction, 0.0, 1.0) * 100.0);

        if (const auto now = isTerminal ? percent : percent / step * step; now != shown)
        {
            shown = now;
            output.print (isTerminal ? bar (percent) : std::to_string (now) + " %\n");
            isLineOpen = isTerminal;
        }
    }

    void outcome (const Outcome& outcome) override
    {
        auto text = numbered (outcome.number) + std::string (headlineOf (outcome.result));

        if (outcome.failure)
            text += ": " + describe (*outcome.failure);
        else if (! outcome.reason.empty())
            text += ": " + escapedText (outcome.reason);

        closeLine();

        // The results of many are one list.
        if (outcome.result == Result::complete || outcome.number != 0)
            output.print (text + "\n");
        else
            output.printError ("wqv-update: " + text + "\n");
    }

    void summary (int complete, int notComplete) override
    {
        output.print (std::to_string (complete) + " complete, " + std::to_string (notComplete) + " not complete\n");
    }

private:
    void closeLine()
    {
        if (std::exchange (isLineOpen, false))
            output.print ("\n");
    }

    static std::string numbered (int number) { return number == 0 ? "" : std::to_string (number) + ": "; }

    static std::string bar (int percent)
    {
        constexpr std::size_t width = 50;
        const auto filled = static_cast<std::size_t> (percent) * width / 100;
        const auto figure = std::to_string (percent);
        return "\r[" + std::string (filled, '#') + std::string (width - filled, '.') + "] "
               + std::string (3 - figure.size(), ' ') + figure + " %";
    }

    Output& output;
    const bool isTerminal;
    bool isLineOpen = false; ///< what was printed last does not end its line
    int shown = -1;          ///< the figure that was shown last
};

} // namespace

std::unique_ptr<Reporter> makePlainReporter (Output& output, bool isTerminal)
{
    return std::make_unique<PlainReporter> (output, isTerminal);
}

} // namespace wqv
