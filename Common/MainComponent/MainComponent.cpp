// SPDX-License-Identifier: GPL-3.0-or-later
// How the panel's controls and picture follow the updater, and its calls from the controls.

#include "MainComponent.h"

#include "ImageLoader.h"
#include "JuceVersions.h"
#include "TxtLoader.h"

#include <utility>

namespace wqv
{
namespace
{

/** Created at start-up; the panel's background, and what the buttons are filled with. */
const juce::Colour BackgroundColour (234, 234, 234);

const juce::Rectangle<int> warningArea (20, 15, 64, 64);

/** What the buttons say; empty where there is no such button. */
struct Captions
{
    TextId ok = TextId::empty;
    TextId cancel = TextId::empty;
};

Captions captionsOf (UpdaterStatus_t status, bool packageValid)
{
    if (status == UPDATER_STATUS_START)
        return { .ok = TextId::ok, .cancel = TextId::cancel };

    if (! packageValid || status == UPDATER_STATUS_COMPLETE || status == UPDATER_STATUS_ERROR)
        return { .cancel = TextId::ok };

    if (status == UPDATER_STATUS_UPDATING)
        return {};

    if (status == UPDATER_STATUS_READY)
        return { .ok = TextId::start, .cancel = TextId::close };

    return { .cancel = TextId::close };
}

/** Item ids begin at 1. A language that is not offered leaves its id out. */
int itemIdOf (std::uint32_t language)
{
    return static_cast<int> (language) + 1;
}

} // namespace

MainComponent::Resources::Resources (std::span<const std::string> preferredLanguages, FlgTable fontSection)
{
    skipFontsOfTheMachine();
    juce::LookAndFeel::setDefaultLookAndFeel (&defaultLook);

    TxtLoader::createInstance (preferredLanguages, fontSection);
    ImageLoader::createInstance();
}

MainComponent::Resources::~Resources()
{
    ImageLoader::releaseInstance();
    TxtLoader::releaseInstance();

    juce::LookAndFeel::setDefaultLookAndFeel (nullptr);
}

MainComponent::MainComponent (Updater::Host host, std::span<const std::string> preferredLanguages, FlgTable fontSection)
    : resources (preferredLanguages, fontSection), updater (std::move (host), *this)
{
    addAndMakeVisible (langs);
    langs.setLookAndFeel (&langLookAndFeel);
    langs.addListener (this);
    langs.setWantsKeyboardFocus (false);
    langs.setMouseClickGrabsKeyboardFocus (false); // which would go to the panel
    addLanguages();

    addAndMakeVisible (progressBar);
    progressBar.setLookAndFeel (&progressLookAndFeel);
    progressBar.setColour (juce::ProgressBar::backgroundColourId, juce::Colour (8, 8, 8));

    // Our look does not draw with it: kept for those who build on this class, with another look.
    progressBar.setColour (juce::ProgressBar::foregroundColourId, juce::Colour (61, 61, 61));

    addButton (okButton);
    addButton (cancelButton);

    setSize (panelWidth, panelHeight);
}

MainComponent::~MainComponent()
{
    langs.setLookAndFeel (nullptr);
    progressBar.setLookAndFeel (nullptr);
}

void MainComponent::addLanguages()
{
    const auto& texts = *TxtLoader::getInstance();

    for (std::uint32_t language = 0; language < languageCount; ++language)
        if (texts.isEnabled (language))
            langs.addItem (texts.getLang (language), itemIdOf (language));

    langs.setSelectedId (itemIdOf (texts.locale()), juce::dontSendNotification);
}

void MainComponent::addButton (AlineButton& button)
{
    addAndMakeVisible (button);
    button.addListener (this);
    button.setMouseClickGrabsKeyboardFocus (false); // a click that does not count would have the next key press it
    button.setStyle (juce::Font::bold);
    button.setColour (juce::TextButton::buttonColourId, BackgroundColour);
    button.setColour (juce::TextButton::buttonOnColourId, BackgroundColour);
}

void MainComponent::updaterChanged()
{
    updateCtrl();
    pressGuard.screenChanged();

    // Not to Start, which nobody is to press who has not looked for it.
    keyboardFocus.screenChanged (updater.status() == UPDATER_STATUS_START ? &okButton
                                 : okButton.isVisible()                   ? nullptr
                                                                          : &cancelButton);
}

void MainComponent::buttonClicked (juce::Button* button)
{
    if (pressGuard.pressIsOld())
        return;

    if (button == &okButton)
        updater.confirm();
    else if (button == &cancelButton)
        updater.leave();
}

void MainComponent::comboBoxChanged (juce::ComboBox* box)
{
    if (box != &langs)
        return;

    auto& texts = *TxtLoader::getInstance();
    const auto chosen = static_cast<std::uint32_t> (langs.getSelectedId() - 1);

    if (chosen != texts.locale())
        texts.setLocale (chosen);

    updateCtrl();
}

void MainComponent::timerCallback()
{
    progress = updater.progress();
}

/** Shows the screen of the updater's status, in the current language. */
void MainComponent::updateCtrl()
{
    constexpr int progressUpdatesPerSecond = 30;

    const auto& texts = *TxtLoader::getInstance();
    const auto status = updater.status();
    const auto isFirstScreen = status == UPDATER_STATUS_START;
    const auto isUpdating = status == UPDATER_STATUS_UPDATING;

    if (auto* const window = getParentComponent())
        window->setName (texts.getString (TextId::windowTitle));

    text.layOut ({ .status = status,
                   .packageValid = updater.packageValid(),
                   .deviceVersion = updater.deviceVersion(),
                   .packageVersion = updater.packageVersion() });

    langs.setVisible (isFirstScreen);
    progressBar.setVisible (isUpdating);

    if (isFirstScreen)
    {
        langs.setSelectedId (itemIdOf (texts.locale()), juce::dontSendNotification);
        langs.resized();
    }

    if (! isUpdating)
    {
        stopTimer();
    }
    else if (! isTimerRunning())
    {
        timerCallback();
        startTimerHz (progressUpdatesPerSecond);
    }

    updateButtons();
    updateAccessibleTexts();
    repaint();
}

/** The button on the right is the one that goes on; where a screen has only one, that is its place. */
void MainComponent::updateButtons()
{
    const juce::Rectangle<int> rightPlace (getWidth() - 120, getHeight() - 40, 100, 20);
    const juce::Rectangle<int> leftPlace (getWidth() - 230, getHeight() - 40, 100, 20);
    const auto& texts = *TxtLoader::getInstance();
    const auto captions = captionsOf (updater.status(), updater.packageValid());

    for (const auto& [button, caption] :
         { std::pair (&okButton, captions.ok), std::pair (&cancelButton, captions.cancel) })
    {
        button->setVisible (caption != TextId::empty);
        button->setFont (texts.getFont());

        if (button->isVisible())
            button->setButtonText (texts.getString (caption));
    }

    okButton.setBounds (rightPlace);
    cancelButton.setBounds (okButton.isVisible() ? leftPlace : rightPlace);
}

/** What a screen reader would read, where JUCE hands it over. */
void MainComponent::updateAccessibleTexts()
{
    const auto& texts = *TxtLoader::getInstance();

    setTitle (texts.getString (TextId::windowTitle));
    setDescription (text.getWords());
    langs.setTitle (texts.getString (TextId::languageSelections));
    progressBar.setTitle (text.getWords());

    for (auto* const button : { &okButton, &cancelButton })
        button->setTitle (button->getButtonText());
}

void MainComponent::focusGained (FocusChangeType /*cause*/)
{
    keyboardFocus.focusGained();
}

void MainComponent::focusOfChildComponentChanged (FocusChangeType /*cause*/)
{
    pressGuard.keyboardCame();
    keyboardFocus.focusOfChildComponentChanged();
}

bool MainComponent::keyPressed (const juce::KeyPress& key)
{
    if (keyboardFocus.keyPressed (key))
        return true;

    const auto step = key.isKeyCode (juce::KeyPress::downKey) ? 1 : key.isKeyCode (juce::KeyPress::upKey) ? -1 : 0;

    if (step == 0 || updater.status() != UPDATER_STATUS_START)
        return false;

    langs.setSelectedItemIndex (juce::jlimit (0, langs.getNumItems() - 1, langs.getSelectedItemIndex() + step),
                                juce::sendNotificationSync);
    return true;
}

bool MainComponent::showsWarning() const
{
    const auto status = updater.status();

    return status != UPDATER_STATUS_START
           && (! updater.packageValid() || status == UPDATER_STATUS_NOT_CONNECTED || status == UPDATER_STATUS_ERROR);
}

void MainComponent::resized()
{
    constexpr int margin = 20;
    const juce::Rectangle<int> middle (margin, (getHeight() - margin) / 2, getWidth() - 2 * margin, margin);

    updateCtrl();
    langs.setBounds (middle);
    progressBar.setBounds (middle);
}

/** A window that has just got the panel gets the title too. */
void MainComponent::parentHierarchyChanged()
{
    updateCtrl();
}

void MainComponent::paint (juce::Graphics& g)
{
    g.fillAll (BackgroundColour);

    if (const auto picture = ImageLoader::getInstance()->getImage (0); showsWarning() && picture.isValid())
        g.drawImage (picture, warningArea.toFloat());

    g.setColour (juce::Colours::black);
    text.draw (g);

    keyboardFocus.paint (g);
}

} // namespace wqv
