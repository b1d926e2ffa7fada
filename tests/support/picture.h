// A PNG file of 8 bits a channel, pixel by pixel.
#pragma once

#include <cairo.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace support {

class Picture {
public:
    explicit Picture(const std::string& file) : surface_(cairo_image_surface_create_from_png(file.c_str()))
    {
        if (cairo_surface_status(surface_) != CAIRO_STATUS_SUCCESS ||
            (cairo_image_surface_get_format(surface_) != CAIRO_FORMAT_ARGB32 &&
             cairo_image_surface_get_format(surface_) != CAIRO_FORMAT_RGB24))
            throw std::runtime_error("cannot read " + file);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture() { cairo_surface_destroy(surface_); }

    int width() const { return cairo_image_surface_get_width(surface_); }
    int height() const { return cairo_image_surface_get_height(surface_); }

    // How far a pixel is from that of another picture: the most of all channels, of 255.
    int difference(const Picture& other, int x, int y) const
    {
        int most = 0;
        for (unsigned int shift = 0; shift < 32; shift += 8) {
            const auto channel = [shift](std::uint32_t pixel) {
                return static_cast<int>(pixel >> shift & 0xFFU);
            };
            most = std::max(most, std::abs(channel(pixel(x, y)) - channel(other.pixel(x, y))));
        }
        return most;
    }

    // How much of a pixel is drawn on, of 255: all where the picture has no transparency.
    int ink(int x, int y) const
    {
        const bool has_alpha = cairo_image_surface_get_format(surface_) == CAIRO_FORMAT_ARGB32;
        return has_alpha ? static_cast<int>(pixel(x, y) >> 24U) : 255;
    }

private:
    std::uint32_t pixel(int x, int y) const
    {
        const unsigned char* const row =
            cairo_image_surface_get_data(surface_) + y * cairo_image_surface_get_stride(surface_);
        return reinterpret_cast<const std::uint32_t*>(row)[x];
    }

    cairo_surface_t* surface_;
};

} // namespace support
