// SPDX-License-Identifier: GPL-3.0-or-later
// Fuzzes the reader of the uncompressed bitmap. JUCE, over a stand-in, reads no other format here.

#include "Fuzz.h"
#include "ImageLoader.h"

namespace
{

/** Each pixel is that of the file, whose rows go up and whose bytes are the other way round. */
void expectPixels (const juce::Image& image, std::span<const std::uint8_t> bytes)
{
    constexpr std::size_t pixels = 98;
    const auto bytesPerPixel = std::size_t { bytes[48] } / 8;
    const auto width = static_cast<std::size_t> (image.getWidth());
    const auto stride = (width * bytesPerPixel + 3) / 4 * 4;
    const juce::Image::BitmapData data (image, juce::Image::BitmapData::readOnly);

    for (int y = 0; y < image.getHeight(); ++y)
        for (int x = 0; x < image.getWidth(); ++x)
        {
            const auto row = static_cast<std::size_t> (image.getHeight() - 1 - y);
            const auto stored = bytes.subspan (pixels + row * stride + static_cast<std::size_t> (x) * bytesPerPixel);

            for (std::size_t i = 0; i < bytesPerPixel; ++i)
                wqv::expect (data.getPixelPointer (x, y)[i] == stored[bytesPerPixel - 1 - i],
                             "each pixel is where it belongs");
        }
}

} // namespace

int LLVMFuzzerTestOneInput (const std::uint8_t* data, std::size_t size)
{
    const std::span bytes (data, size);

    if (const auto image = wqv::ImageLoader::Load (bytes); image.isValid())
    {
        wqv::expect (image.getWidth() == (bytes[30] | bytes[31] << 8 | bytes[32] << 16 | bytes[33] << 24)
                         && image.getHeight() == (bytes[38] | bytes[39] << 8 | bytes[40] << 16 | bytes[41] << 24),
                     "a picture is as large as its header says");
        expectPixels (image, bytes);
    }

    return 0;
}
