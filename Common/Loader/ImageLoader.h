// SPDX-License-Identifier: GPL-3.0-or-later
// The program's pictures, decoded once and kept.

#pragma once

#include "Binary.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <cstdint>
#include <span>

namespace wqv
{

/** Holds image 0, the warning sign. One object, made and released by the panel; message thread only. */
class ImageLoader final
{
public:
    /** Makes the instance, if there is none, and decodes its image. */
    static void createInstance();

    /** The instance; made if there is none. */
    static ImageLoader* getInstance();

    /** Deletes the instance, if there is one. */
    static void releaseInstance();

    ImageLoader (const ImageLoader&) = delete;
    ImageLoader& operator= (const ImageLoader&) = delete;
    virtual ~ImageLoader() = default;

    /** Image 0. Null for any other index, and if it could not be decoded. */
    [[nodiscard]] juce::Image getImage (std::uint32_t index) const;

    /** Decodes an image: any format that JUCE reads, else the uncompressed bitmap of decodeBitmap. Total: null for
        any other bytes. */
    [[nodiscard]] static juce::Image Load (std::span<const std::uint8_t> bytes);

private:
    ImageLoader();

    static inline ImageLoader* m_pinstance = nullptr;

    juce::Image m_image;
};

} // namespace wqv
