// SPDX-License-Identifier: GPL-3.0-or-later
// The JSON file of a conversation.

#include "ControllerReport.h"

#include "Checksums.h"
#include "FirmwareVersion.h"

#include <nlohmann/json.hpp>

#include <fstream>

namespace wqv
{

void ControllerReport::addStep (const std::string& text)
{
    steps.emplace_back (std::chrono::duration_cast<std::chrono::milliseconds> (Clock::now() - start), text);
}

std::string ControllerReport::write (const VirtualController& controller, const std::filesystem::path& file) const
{
    using Json = nlohmann::ordered_json;
    Json report { { "updated", controller.isUpdated() },
                  { "firmware", firmwareVersionText (controller.versionNumber()) },
                  { "requests", controller.requestCount() },
                  { "brokenRules", controller.hostErrors() },
                  { "blocks", Json::array() },
                  { "steps", Json::array() } };

    for (const auto& [number, data] : controller.receivedBlocks())
        report["blocks"].push_back ({ { "number", number }, { "bytes", data.size() }, { "crc16", calcCRC16 (data) } });

    for (const auto& [time, text] : steps)
        report["steps"].push_back ({ { "milliseconds", time.count() }, { "text", text } });

    std::ofstream stream (file);
    stream << report.dump (4) << '\n';
    return stream.flush() ? std::string() : "cannot write " + file.string();
}

} // namespace wqv
