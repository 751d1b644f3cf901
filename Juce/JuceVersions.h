// SPDX-License-Identifier: GPL-3.0-or-later
// What differs between the versions of JUCE that this program builds with, from 7.0.5 on, and between its systems: all of
// it is here.

#pragma once

#include <juce_core/juce_core.h>

#ifdef JUCE_MODULE_AVAILABLE_juce_events
#include <juce_events/juce_events.h>
#endif

#ifdef JUCE_MODULE_AVAILABLE_juce_graphics
#include <juce_graphics/juce_graphics.h>

#include <cstddef>
#include <cstdlib>
#include <utility>
#endif

/** The header that declares juce::LinuxEventLoopInternal. */
#if JUCE_VERSION >= 0x070006
#define WQV_JUCE_EVENT_LOOP_INTERNAL <juce_events/native/juce_EventLoopInternal_linux.h>
#else
#define WQV_JUCE_EVENT_LOOP_INTERNAL <juce_events/native/juce_linux_EventLoopInternal.h>
#endif

namespace juce
{

/** Dispatches what is pending, or waits for something to be; whether it dispatched anything. */
#if JUCE_VERSION >= 0x070006
namespace detail
{
bool dispatchNextMessageOnSystemQueue (bool returnIfNoPendingMessages);
}

using detail::dispatchNextMessageOnSystemQueue;
#else
bool dispatchNextMessageOnSystemQueue (bool returnIfNoPendingMessages);
#endif

} // namespace juce

#ifdef JUCE_MODULE_AVAILABLE_juce_events
namespace wqv
{

/** Runs the application that @p make makes, to its end.
    @returns the exit status */
inline int runApplication (juce::JUCEApplicationBase* (*make)(), int argc, char* argv[])
{
    juce::JUCEApplicationBase::createInstance = make;

#ifdef JUCE_WINDOWS
    // It asks the system for the command line.
    static_cast<void> (argc);
    static_cast<void> (argv);
    return juce::JUCEApplicationBase::main();
#else
    return juce::JUCEApplicationBase::main (argc, const_cast<const char**> (argv));
#endif
}

} // namespace wqv
#endif

#ifdef JUCE_MODULE_AVAILABLE_juce_graphics
namespace wqv
{

/** Keeps JUCE from opening every font file of the machine, which can take seconds. To be called before it draws or measures
    any text. Only JUCE for Linux does that, 7.0.5 and 8.0.6 alike. */
inline void skipFontsOfTheMachine()
{
#ifdef JUCE_LINUX
    // A folder that has no fonts.
    setenv ("JUCE_FONT_PATH", "/dev/null", 1); // NOLINT (concurrency-mt-unsafe): no other thread reads it yet
#endif
}

#if defined(JUCE_WINDOWS) && JUCE_VERSION < 0x080000
/** A typeface whose glyphs are drawn as they are. JUCE (7.0.5, on Windows alone) moves their points to whole pixels by the
    heights of certain letters, and computes with no number, for every point on the line, where a typeface has capitals and no
    small letters. */
class UnmovedTypeface final : public juce::Typeface
{
public:
    explicit UnmovedTypeface (Ptr typefaceToUse)
        : Typeface (typefaceToUse->getName(), typefaceToUse->getStyle()), typeface (std::move (typefaceToUse))
    {
    }

    juce::EdgeTable* getEdgeTableForGlyph (int glyph, const juce::AffineTransform& transform, float /*height*/) override
    {
        juce::Path path;

        if (! typeface->getOutlineForGlyph (glyph, path) || path.isEmpty())
            return nullptr;

        const auto area = path.getBoundsTransformed (transform).getSmallestIntegerContainer().expanded (1, 0);
        return new juce::EdgeTable (area, path, transform); // NOLINT: the caller's
    }

    float getAscent() const override { return typeface->getAscent(); }
    float getDescent() const override { return typeface->getDescent(); }
    float getHeightToPointsFactor() const override { return typeface->getHeightToPointsFactor(); }
    float getStringWidth (const juce::String& text) override { return typeface->getStringWidth (text); }
    bool getOutlineForGlyph (int glyph, juce::Path& path) override
    {
        return typeface->getOutlineForGlyph (glyph, path);
    }

    void getGlyphPositions (const juce::String& text, juce::Array<int>& glyphs, juce::Array<float>& offsets) override
    {
        typeface->getGlyphPositions (text, glyphs, offsets);
    }

private:
    const Ptr typeface;
};
#endif

/** A typeface from the bytes of its file. */
inline juce::Typeface::Ptr makeTypeface (const void* bytes, std::size_t size)
{
    auto typeface = juce::Typeface::createSystemTypefaceFor (bytes, size);

#if defined(JUCE_WINDOWS) && JUCE_VERSION < 0x080000
    typeface = new UnmovedTypeface (std::move (typeface));
#endif

    return typeface;
}

/** What a juce::Font is made of: typeface name, height and style. */
#if JUCE_VERSION >= 0x080000
using FontOptions = juce::FontOptions;
#else
using FontOptions = juce::Font;
#endif

/** Adds a line of text to an arrangement, from 0 on the baseline 0, a glyph for each character. */
inline void addLineOfText (juce::GlyphArrangement& glyphs, const juce::Font& font, const juce::String& line)
{
#if JUCE_VERSION >= 0x080000
    juce::Array<int> numbers;
    juce::Array<float> offsets; // and, behind them, the width
    font.getTypefacePtr()->getGlyphPositions (
        font.getMetricsKind(), line, numbers, offsets, font.getHeight(), font.getHorizontalScale());

    for (int i = 0; i < numbers.size(); ++i)
        glyphs.addGlyph ({ font,
                           line[i],
                           numbers[i],
                           offsets[i],
                           0.0f,
                           offsets[i + 1] - offsets[i],
                           juce::CharacterFunctions::isWhitespace (line[i]) });
#else
    glyphs.addLineOfText (font, line, 0.0f, 0.0f);
#endif
}

} // namespace wqv
#endif
