// SPDX-License-Identifier: GPL-3.0-or-later
// The panel without a window.

#pragma once

#include "AlineButton.h"
#include "MainComponent.h"
#include "UpdaterFixture.h"

#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace wqv
{

/** A screen, and what leads to it. */
struct PanelScreen
{
    const char* name;
    const char* faults;
    bool isPluggedIn;
    unsigned packageVersion;
    int presses; ///< of the "OK" button
    UpdaterStatus_t status;
};

inline constexpr PanelScreen panelScreens[] {
    { "start", "", true, 105, 0, UPDATER_STATUS_START },
    { "ready", "", true, 105, 1, UPDATER_STATUS_READY },
    { "updating", "silent@4", true, 105, 2, UPDATER_STATUS_UPDATING },
    { "complete", "", true, 105, 2, UPDATER_STATUS_COMPLETE },
    { "error", "refuse@1", true, 105, 2, UPDATER_STATUS_ERROR },
    { "not-connected", "", false, 105, 1, UPDATER_STATUS_NOT_CONNECTED },
    { "bad-package", "", true, 0, 1, UPDATER_STATUS_NOT_CONNECTED },
};

/** The panel, off any screen, and what its updater needs. */
class PanelFixture final : public UpdaterSurroundings
{
public:
    using UpdaterSurroundings::UpdaterSurroundings;

    /** The panel on one of its screens. */
    PanelFixture (const PanelScreen& screen, const std::string& language)
        : UpdaterSurroundings (screen.faults, writePackage (smallPackage (screen.packageVersion)))
    {
        if (screen.isPluggedIn)
            plugIn();

        open (language);

        for (int i = 0; i < screen.presses; ++i)
            press ("OK");

        loop.runUntil ([&] { return panel->status() == screen.status; });
    }

    /** @param language  preferred one, as an identifier */
    void open (const std::string& language = "en") { panel.emplace (host(), std::span (&language, 1)); }

    template <typename Control>
    [[nodiscard]] Control& find (const juce::String& name = {})
    {
        for (auto* const child : panel->getChildren())
            if (auto* const control = dynamic_cast<Control*> (child); control != nullptr && child->getName() == name)
                return *control;

        throw std::runtime_error ("no control " + name.toStdString());
    }

    void press (const juce::String& name)
    {
        find<AlineButton> (name).triggerClick();
        loop.drain();
    }

    /** The visible controls: name, bounds, caption. */
    [[nodiscard]] std::vector<std::string> controls() const
    {
        std::vector<std::string> list;

        for (auto* const child : panel->getChildren())
        {
            const auto* const button = dynamic_cast<juce::Button*> (child);
            const auto caption = button != nullptr ? " " + button->getButtonText() : juce::String();

            if (child->isVisible())
                list.push_back ((child->getName() + " " + child->getBounds().toString() + caption).toStdString());
        }

        return list;
    }

    [[nodiscard]] juce::Image picture()
    {
        juce::Image image (juce::Image::RGB, panel->getWidth(), panel->getHeight(), true);
        juce::Graphics g (image);
        panel->paintEntireComponent (g, true);
        return image;
    }

    std::optional<MainComponent> panel;
};

} // namespace wqv
