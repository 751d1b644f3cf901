// SPDX-License-Identifier: GPL-3.0-or-later
// The push button: its caption and its keys.

#pragma once

#include "BtnLookAndFeel.h"

#include <juce_gui_basics/juce_gui_basics.h>

namespace wqv
{

/** A push button whose caption has an alignment, a typeface and a style of its own. Return and Space press it while it has
    the keyboard; around it then is a line of its parent's, which is painted anew when the keyboard comes or goes. Message
    thread only. */
class AlineButton final : public juce::Button
{
public:
    /** Black, with a centred, plain caption in the default sans-serif typeface.
        @param name  the component's name, and its text until another is set */
    explicit AlineButton (const juce::String& name);
    ~AlineButton() override;

    /** Sets the caption and repaints, be it the same one. */
    void setButtonText (const juce::String& newText);

    // These take effect when the button is painted next; they do not ask for that.

    /** No button of ours has another alignment than the first: for those who build on this class. */
    void setAline (juce::Justification alignment) { m_aline = alignment; }
    void setFont (const juce::String& typefaceName) { m_fontName = typefaceName; }

    /** @param style  juce::Font::FontStyleFlags */
    void setStyle (int style) { m_style = style; }

    void paintButton (juce::Graphics& g, bool isMouseOver, bool isButtonDown) override;
    bool keyPressed (const juce::KeyPress& key) override;
    void focusGained (FocusChangeType cause) override;
    void focusLost (FocusChangeType cause) override;

private:
    BtnLookAndFeel m_lookAndFeel;
    juce::Justification m_aline { juce::Justification::centred };
    juce::String m_fontName;
    int m_style = juce::Font::plain;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (AlineButton)
};

} // namespace wqv
