// SPDX-License-Identifier: GPL-3.0-or-later
// The least that JUCE can show: a window as large as the program's, with nothing in it.

#include <juce_gui_basics/juce_gui_basics.h>

#include <memory>

namespace wqv
{
namespace
{

struct Panel final : juce::Component
{
    Panel() { setSize (420, 170); }
    void paint (juce::Graphics& g) override { g.fillAll (juce::Colour (234, 234, 234)); }
};

struct BareWindow final : juce::ResizableWindow
{
    BareWindow() : ResizableWindow ("Bare", true)
    {
        setUsingNativeTitleBar (true);
        setContentOwned (new Panel, true);
        centreWithSize (getWidth(), getHeight());
        setVisible (true);
    }

    void userTriedToCloseWindow() override {}
};

struct BareApplication final : juce::JUCEApplication
{
    void initialise (const juce::String& /*commandLine*/) override { window = std::make_unique<BareWindow>(); }
    void shutdown() override { window.reset(); }
    const juce::String getApplicationName() override { return "Bare"; } // NOLINT (readability-const-return-type)
    const juce::String getApplicationVersion() override { return "1"; } // NOLINT (readability-const-return-type)

    std::unique_ptr<BareWindow> window;
};

} // namespace
} // namespace wqv

int main (int argc, char* argv[])
{
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* { return new wqv::BareApplication; };
    return juce::JUCEApplicationBase::main (argc, const_cast<const char**> (argv));
}
