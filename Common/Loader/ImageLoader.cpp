// SPDX-License-Identifier: GPL-3.0-or-later
// Decodes pictures: by JUCE, or as the program's own uncompressed bitmap.

#include "ImageLoader.h"

#include "LittleEndian.h"

#include <algorithm>
#include <cstddef>

namespace wqv
{
namespace
{

/** The layout of the uncompressed bitmap, which is this program's own: offsets from the start of the file. */
constexpr std::size_t widthOffset = 30;
constexpr std::size_t heightOffset = 38;
constexpr std::size_t bitsPerPixelOffset = 48;
constexpr std::size_t pixelsOffset = 98;

/** Our picture is a PNG; this is kept for those who embed a bitmap.
    24 or 32 bits a pixel, rows from bottom to top, each padded to a multiple of 4 bytes. */
juce::Image decodeBitmap (std::span<const std::uint8_t> bytes)
{
    if (bytes.size() < pixelsOffset || bytes[0] != 'B' || bytes[1] != 'M')
        return {};

    const auto bitsPerPixel = littleEndian (bytes.subspan (bitsPerPixelOffset, 2));
    const std::uint64_t width = littleEndian (bytes.subspan (widthOffset, 4));
    const std::uint64_t height = littleEndian (bytes.subspan (heightOffset, 4));
    const auto pixels = bytes.subspan (pixelsOffset);

    // A side is below the number of bytes, or the rows could not be there: so nothing below can overflow.
    if ((bitsPerPixel != 24 && bitsPerPixel != 32) || width == 0 || height == 0 || width > pixels.size()
        || height > pixels.size())
        return {};

    const auto bytesPerPixel = bitsPerPixel / 8;
    const auto stride = (bytesPerPixel * width + 3) & ~std::uint64_t { 3 };

    if (stride > pixels.size() / height)
        return {};

    juce::Image image (bytesPerPixel == 3 ? juce::Image::RGB : juce::Image::ARGB,
                       static_cast<int> (width),
                       static_cast<int> (height),
                       true);
    const juce::Image::BitmapData target (image, juce::Image::BitmapData::writeOnly);

    for (std::uint64_t row = 0; row < height; ++row)
    {
        const auto stored = pixels.subspan (static_cast<std::size_t> (row * stride));

        for (std::uint64_t x = 0; x < width; ++x)
        {
            const auto pixel = stored.subspan (static_cast<std::size_t> (x * bytesPerPixel), bytesPerPixel);

            std::ranges::reverse_copy (
                pixel, target.getPixelPointer (static_cast<int> (x), static_cast<int> (height - 1 - row)));
        }
    }

    return image;
}

} // namespace

void ImageLoader::createInstance()
{
    if (m_pinstance == nullptr)
        m_pinstance = new ImageLoader;
}

ImageLoader* ImageLoader::getInstance()
{
    createInstance();
    return m_pinstance;
}

void ImageLoader::releaseInstance()
{
    delete m_pinstance;
    m_pinstance = nullptr;
}

ImageLoader::ImageLoader() : m_image (Load (imageList[0])) {}

juce::Image ImageLoader::getImage (std::uint32_t index) const
{
    return index == 0 ? m_image : juce::Image();
}

juce::Image ImageLoader::Load (std::span<const std::uint8_t> bytes)
{
    // Straight from the bytes: JUCE's image cache would keep a timer running (7.0.5 and 8.0.6).
    auto image = juce::ImageFileFormat::loadFrom (bytes.data(), bytes.size());
    return image.isValid() ? image : decodeBitmap (bytes);
}

} // namespace wqv
