// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures from any bytes.

#include "ImageLoader.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace wqv
{

namespace
{

using Bytes = std::vector<std::uint8_t>;

/** A bitmap of the program's own layout. Its pixels are 1, 2, 3 and so on, byte by byte. */
Bytes bitmap (std::uint32_t width, std::uint32_t height, std::uint16_t bitsPerPixel, std::size_t pixelBytes)
{
    Bytes bytes (98 + pixelBytes);
    bytes[0] = 'B';
    bytes[1] = 'M';

    for (std::size_t i = 0; i < 4; ++i)
    {
        bytes[30 + i] = static_cast<std::uint8_t> (width >> (8 * i));
        bytes[38 + i] = static_cast<std::uint8_t> (height >> (8 * i));
    }

    bytes[48] = static_cast<std::uint8_t> (bitsPerPixel);
    bytes[49] = static_cast<std::uint8_t> (bitsPerPixel >> 8);

    std::iota (bytes.begin() + 98, bytes.end(), std::uint8_t { 1 });
    return bytes;
}

TEST (Images, rowsRunUpwardsAndPixelsBackwards)
{
    // Two pixels of 3 bytes and 2 bytes to fill up the row, twice; the pixels are red, green, blue.
    const auto rgb = ImageLoader::Load (bitmap (2, 2, 24, 16));
    EXPECT_EQ (rgb.getFormat(), juce::Image::RGB);
    EXPECT_EQ (rgb.getPixelAt (0, 1), juce::Colour (1, 2, 3));
    EXPECT_EQ (rgb.getPixelAt (1, 1), juce::Colour (4, 5, 6));
    EXPECT_EQ (rgb.getPixelAt (0, 0), juce::Colour (9, 10, 11));
    EXPECT_EQ (rgb.getPixelAt (1, 0), juce::Colour (12, 13, 14));

    // Alpha, red, green, blue; solid, so that the colours are not scaled.
    auto bytes = bitmap (2, 2, 32, 16);

    for (std::size_t pixel = 0; pixel < 4; ++pixel)
        bytes[98 + 4 * pixel] = 255;

    const auto argb = ImageLoader::Load (bytes);
    EXPECT_EQ (argb.getFormat(), juce::Image::ARGB);
    EXPECT_EQ (argb.getPixelAt (0, 1), juce::Colour (2, 3, 4));
    EXPECT_EQ (argb.getPixelAt (1, 0), juce::Colour (14, 15, 16));
}

TEST (Images, whatIsNoPictureGivesNone)
{
    auto unmarked = bitmap (2, 2, 24, 16);
    unmarked[0] = 'X';

    const std::pair<const char*, Bytes> cases[] = {
        { "not BM", unmarked },
        { "16 bits", bitmap (2, 2, 16, 16) },
        { "24 bits and a high byte", bitmap (2, 2, 24 + 256, 16) },
        { "no width", bitmap (0, 2, 24, 16) },
        { "no height", bitmap (2, 0, 24, 16) },
        { "huge", bitmap (0xFFFFFFFF, 0xFFFFFFFF, 32, 64) },
        { "wide", bitmap (0x40000001, 1, 32, 64) },
        { "high", bitmap (1, 0x40000001, 32, 64) },
    };

    for (const auto& [name, bytes] : cases)
        EXPECT_FALSE (ImageLoader::Load (bytes).isValid()) << name;

    // Each prefix on its own, so that reading beyond it shows.
    const auto whole = bitmap (2, 2, 24, 16);

    for (std::size_t length = 0; length <= whole.size(); ++length)
    {
        const Bytes bytes (whole.begin(), whole.begin() + static_cast<std::ptrdiff_t> (length));
        EXPECT_EQ (ImageLoader::Load (bytes).isValid(), length == whole.size()) << length;
    }

    std::minstd_rand random;

    for (int i = 0; i < 500; ++i)
    {
        Bytes bytes (random() % 300);
        std::ranges::generate (bytes, [&] { return static_cast<std::uint8_t> (random()); });
        EXPECT_FALSE (ImageLoader::Load (bytes).isValid());
    }
}

TEST (Images, warningSignIsTheOnlyOne)
{
    const auto& images = *ImageLoader::getInstance();
    EXPECT_TRUE (images.getImage (0).hasAlphaChannel());
    EXPECT_FALSE (images.getImage (1).isValid());
    ImageLoader::releaseInstance();
}

} // namespace
} // namespace wqv
