// SPDX-License-Identifier: GPL-3.0-or-later
// The panel's controls and painting.

#include "MainComponent.h"

#include "ImageLoader.h"
#include "TxtLoader.h"

#include <utility>

namespace wqv
{
namespace
{

/** Created at start-up; the panel's background, and what the buttons are filled with. */
const juce::Colour BackgroundColour (234, 234, 234);

const juce::Rectangle<int> warningArea (20, 15, 64, 64);

/** Shows which button has the keyboard. */
void drawLineAround (juce::Graphics& g, juce::Rectangle<int> button)
{
    constexpr float distance = 3.0f;
    constexpr float thickness = 2.0f;
    const auto line = button.toFloat().expanded (distance);

    g.setColour (juce::Colour (82, 156, 231));
    g.drawRoundedRectangle (line, line.getHeight() / 2.0f, thickness);
}

/** Item ids begin at 1. A language that is not offered leaves its id out. */
int itemIdOf (std::uint32_t language)
{
    return static_cast<int> (language) + 1;
}

} // namespace

MainComponent::Resources::Resources (std::span<const std::string> preferredLanguages)
{
    EmbeddedTypefaces::skipFontsOfTheMachine();
    juce::LookAndFeel::setDefaultLookAndFeel (&defaultLook);

    TxtLoader::createInstance (preferredLanguages);
    ImageLoader::createInstance();
}

MainComponent::Resources::~Resources()
{
    ImageLoader::releaseInstance();
    TxtLoader::releaseInstance();

    juce::LookAndFeel::setDefaultLookAndFeel (nullptr);
}

MainComponent::MainComponent (Updater::Host host, std::span<const std::string> preferredLanguages)
    : resources (preferredLanguages), updater (std::move (host), *this)
{
    addAndMakeVisible (langs);
    langs.setLookAndFeel (&langLookAndFeel);
    langs.addListener (this);
    langs.setWantsKeyboardFocus (false);
    langs.setMouseClickGrabsKeyboardFocus (false); // which would go to the panel
    addLanguages();

    addAndMakeVisible (progressBar);
    progressBar.setLookAndFeel (&progressLookAndFeel);
    progressBar.setColour (juce::ProgressBar::foregroundColourId, juce::Colour (61, 61, 61));
    progressBar.setColour (juce::ProgressBar::backgroundColourId, juce::Colour (8, 8, 8));

    addButton (okButton);
    addButton (cancelButton);

    setWantsKeyboardFocus (true);
    setMouseClickGrabsKeyboardFocus (false);
    setFocusContainerType (FocusContainerType::keyboardFocusContainer); // so that Tab goes round between the buttons
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
    button.setStyle (juce::Font::bold);
    button.setColour (juce::TextButton::buttonColourId, BackgroundColour);
    button.setColour (juce::TextButton::buttonOnColourId, BackgroundColour);
}

void MainComponent::updaterChanged()
{
    updateCtrl();
    focusAction();
}

void MainComponent::buttonClicked (juce::Button* button)
{
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
    struct Captions
    {
        bool isShown = true;
        TextId ok = TextId::empty; ///< empty: the button is hidden
        TextId cancel = TextId::empty;
    };

    const auto captions = [this]() -> Captions
    {
        const auto status = updater.status();

        if (status == UPDATER_STATUS_START)
            return { .ok = TextId::ok, .cancel = TextId::cancel };

        if (! updater.packageValid() || status == UPDATER_STATUS_COMPLETE || status == UPDATER_STATUS_ERROR)
            return { .cancel = TextId::ok };

        if (status == UPDATER_STATUS_UPDATING)
            return { .isShown = false };

        if (status == UPDATER_STATUS_READY)
            return { .ok = TextId::start, .cancel = TextId::close };

        return { .cancel = TextId::close };
    }();

    const juce::Rectangle<int> rightPlace (getWidth() - 120, getHeight() - 40, 100, 20);
    const juce::Rectangle<int> leftPlace (getWidth() - 230, getHeight() - 40, 100, 20);
    const auto& texts = *TxtLoader::getInstance();
    const auto hasOk = captions.ok != TextId::empty;

    okButton.setVisible (captions.isShown && hasOk);
    cancelButton.setVisible (captions.isShown);

    okButton.setBounds (rightPlace);
    cancelButton.setBounds (hasOk ? leftPlace : rightPlace);

    if (hasOk)
        okButton.setButtonText (texts.getString (captions.ok));

    if (captions.isShown)
        cancelButton.setButtonText (texts.getString (captions.cancel));

    for (auto* const button : { &okButton, &cancelButton })
        button->setFont (texts.getFont());
}

/** What a screen reader would read, if the toolkit handed it over; on X11 it does not. */
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

/** Gives the keyboard to the button that goes on from the screen that has just come. Not to Start, which nobody is to
    press who has not looked at it: there the panel has the keyboard, and Tab leads to the buttons. */
void MainComponent::focusAction()
{
    const auto* const peer = getPeer();

    // A window in the background does not take the keyboard away from the one in front.
    focusIsDue = peer == nullptr || ! peer->isFocused();

    if (focusIsDue)
        return;

    auto* const action = updater.status() == UPDATER_STATUS_START             ? &okButton
                         : cancelButton.isVisible() && ! okButton.isVisible() ? &cancelButton
                                                                              : nullptr;

    if (action == nullptr)
    {
        grabKeyboardFocus();
        return;
    }

    action->ignoreHeldKeys();
    action->grabKeyboardFocus();
}

void MainComponent::focusGained (FocusChangeType /*cause*/)
{
    focusAction();
}

void MainComponent::focusOfChildComponentChanged (FocusChangeType /*cause*/)
{
    repaint();

    if (focusIsDue)
        focusAction();
}

bool MainComponent::keyPressed (const juce::KeyPress& key)
{
    if (key.isKeyCode (juce::KeyPress::tabKey) && hasKeyboardFocus (false) && cancelButton.isVisible())
    {
        (key.getModifiers().isShiftDown() && okButton.isVisible() ? okButton : cancelButton).grabKeyboardFocus();
        return true;
    }

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

    for (const auto* const button : { &okButton, &cancelButton })
        if (button->hasKeyboardFocus (false))
            drawLineAround (g, button->getBounds());
}

} // namespace wqv
