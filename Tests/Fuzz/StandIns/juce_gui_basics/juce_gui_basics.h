// SPDX-License-Identifier: GPL-3.0-or-later
// A stand-in for JUCE's pictures: as many bytes as the pixels take, and not one more.

#pragma once

#include "Fuzz.h"

#include <memory>
#include <vector>

namespace juce
{

struct Image
{
    using PixelFormat = std::size_t; ///< the bytes of a pixel
    static constexpr PixelFormat RGB = 3;
    static constexpr PixelFormat ARGB = 4;

    struct BitmapData
    {
        static constexpr int readOnly = 0;
        static constexpr int writeOnly = 1;

        BitmapData (const Image& imageToUse, int /*mode*/) : image (imageToUse) {}

        [[nodiscard]] std::uint8_t* getPixelPointer (int x, int y) const
        {
            wqv::expect (x >= 0 && x < image.width && y >= 0 && y < image.height, "a pixel lies in the picture");
            return image.pixels->data() + (std::size_t (y) * std::size_t (image.width) + std::size_t (x)) * image.bytes;
        }

        const Image& image;
    };

    Image() = default;

    Image (PixelFormat format, int widthToUse, int heightToUse, bool /*clear*/)
        : width (widthToUse), height (heightToUse), bytes (format)
    {
        wqv::expect (width > 0 && height > 0, "a picture has a width and a height");
        pixels = std::make_shared<std::vector<std::uint8_t>> (std::size_t (width) * std::size_t (height) * bytes);
    }

    [[nodiscard]] bool isValid() const { return pixels != nullptr; }
    [[nodiscard]] int getWidth() const { return width; }
    [[nodiscard]] int getHeight() const { return height; }

    int width = 0;
    int height = 0;
    std::size_t bytes = 0;
    std::shared_ptr<std::vector<std::uint8_t>> pixels;
};

/** Reads nothing: what JUCE does with its formats is not ours. */
struct ImageFileFormat
{
    [[nodiscard]] static Image loadFrom (const void* /*bytes*/, std::size_t /*size*/) { return {}; }
};

} // namespace juce
