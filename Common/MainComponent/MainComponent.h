// SPDX-License-Identifier: GPL-3.0-or-later
// The panel: one screen for each status of the updater.

#pragma once

#include "AlineButton.h"
#include "KeyboardFocus.h"
#include "LangLookAndFeel.h"
#include "PressGuard.h"
#include "ProgramLookAndFeel.h"
#include "ProgressLookAndFeel.h"
#include "ScreenText.h"
#include "TextResource.h"
#include "Updater.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <span>
#include <string>

namespace wqv
{

/** The view. It lays out the screen of the updater's status and turns clicks into calls of the updater, which it owns;
    it decides nothing about an update. Message thread only; may be deleted at any moment. */
class MainComponent final : public juce::Component,
                            private Updater::Listener,
                            private juce::ComboBox::Listener,
                            private juce::Button::Listener,
                            private juce::Timer
{
public:
    /** The panel's size, in pixels at scale 1. */
    static constexpr int panelWidth = 420;
    static constexpr int panelHeight = 170;

    /** Builds the panel, and the updater with what it is given: the package is loaded and the controller looked for.
        @param preferredLanguages, fontSection  decide the language to start with, and the fonts; see
                                                TxtLoader::createInstance */
    explicit MainComponent (Updater::Host host,
                            std::span<const std::string> preferredLanguages = {},
                            FlgTable fontSection = FLG_NONE);
    ~MainComponent() override;

    /** The status whose screen is shown. */
    [[nodiscard]] UpdaterStatus_t status() const { return updater.status(); }

    /** The text of the screen that is shown. */
    [[nodiscard]] const ScreenText& getText() const { return text; }

    /** Stops a running update, without a look at the display. */
    void abandonUpdate() { updater.abandon(); }

    void paint (juce::Graphics& g) override;
    void resized() override;
    void parentHierarchyChanged() override;

    /** Up and Down choose the language on the first screen; Tab leads from the panel to its buttons. */
    bool keyPressed (const juce::KeyPress& key) override;

    void focusGained (FocusChangeType cause) override;
    void focusOfChildComponentChanged (FocusChangeType cause) override;

private:
    void updaterChanged() override;
    void comboBoxChanged (juce::ComboBox* box) override;
    void buttonClicked (juce::Button* button) override;
    void timerCallback() override;

    void addButton (AlineButton& button);
    void addLanguages();
    void updateCtrl();
    void updateButtons();
    void updateAccessibleTexts();
    [[nodiscard]] bool showsWarning() const;

    /** Holds texts, pictures and typefaces while the panel lives. */
    struct Resources
    {
        Resources (std::span<const std::string> preferredLanguages, FlgTable fontSection);
        ~Resources();

        ProgramLookAndFeel defaultLook;
    };

    Resources resources;
    ScreenText text { panelWidth, panelHeight };

    // Looks come before the controls that use them.
    LangLookAndFeel langLookAndFeel;
    juce::ComboBox langs { "langs" };
    ProgressLookAndFeel progressLookAndFeel;
    double progress = 0.0; ///< the updater's, copied while the bar shows
    juce::ProgressBar progressBar { progress };
    AlineButton okButton { "OK" };
    AlineButton cancelButton { "Cancel" };

    PressGuard pressGuard { *this };
    KeyboardFocus keyboardFocus { *this, okButton, cancelButton };

    Updater updater; ///< the first to go: it stops the worker

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (MainComponent)
};

} // namespace wqv
