// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/color_chart.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace virtual_cameras {

namespace {

// Letters of five by seven points, one row per byte, the leftmost point in bit 4.
struct Glyph {
    char letter;
    std::array<std::uint8_t, 7> rows;
};

constexpr Glyph glyphs[] = {{'0', {0x0E, 0x11, 0x13, 0x15, 0x19, 0x11, 0x0E}},
                            {'1', {0x04, 0x0C, 0x04, 0x04, 0x04, 0x04, 0x0E}},
                            {'2', {0x0E, 0x11, 0x01, 0x02, 0x04, 0x08, 0x1F}},
                            {'3', {0x1F, 0x02, 0x04, 0x02, 0x01, 0x11, 0x0E}},
                            {'4', {0x02, 0x06, 0x0A, 0x12, 0x1F, 0x02, 0x02}},
                            {'5', {0x1F, 0x10, 0x1E, 0x01, 0x01, 0x11, 0x0E}},
                            {'6', {0x06, 0x08, 0x10, 0x1E, 0x11, 0x11, 0x0E}},
                            {'7', {0x1F, 0x01, 0x02, 0x04, 0x08, 0x08, 0x08}},
                            {'8', {0x0E, 0x11, 0x11, 0x0E, 0x11, 0x11, 0x0E}},
                            {'9', {0x0E, 0x11, 0x11, 0x0F, 0x01, 0x02, 0x0C}},
                            {'T', {0x1F, 0x04, 0x04, 0x04, 0x04, 0x04, 0x04}},
                            {'O', {0x0E, 0x11, 0x11, 0x11, 0x11, 0x11, 0x0E}},
                            {'P', {0x1E, 0x11, 0x11, 0x1E, 0x10, 0x10, 0x10}}};
constexpr std::int32_t glyphColumns = 5;
constexpr std::int32_t glyphRows = 7;
constexpr std::int32_t glyphAdvance = 6;

constexpr SceneColor background = sceneColor(46, 52, 64);
constexpr SceneColor ink = sceneColor(236, 239, 244);
constexpr SceneColor corner = sceneColor(255, 0, 0);

constexpr std::int32_t patchColumns = 6;
constexpr std::int32_t patchRows = 3;
constexpr SceneColor patches[patchRows][patchColumns] = {
    {sceneColor(115, 82, 68), sceneColor(194, 150, 130), sceneColor(98, 122, 157),
     sceneColor(87, 108, 67), sceneColor(133, 128, 177), sceneColor(103, 189, 170)},
    {sceneColor(214, 126, 44), sceneColor(80, 91, 166), sceneColor(193, 90, 99),
     sceneColor(94, 60, 108), sceneColor(157, 188, 64), sceneColor(224, 163, 46)},
    {sceneColor(30, 60, 200), sceneColor(40, 160, 60), sceneColor(200, 40, 40),
     sceneColor(240, 210, 30), sceneColor(190, 80, 150), sceneColor(0, 140, 170)}};
constexpr std::int32_t rampSteps = 16;

// The picture is laid out on a grid of 64 by 48 cells.
struct Place {
    std::int32_t x;
    std::int32_t y;
};
constexpr std::int32_t gridWidth = 64;
constexpr std::int32_t gridHeight = 48;
constexpr std::int32_t topBand = 10;
constexpr std::int32_t rampTop = 36;
constexpr std::int32_t rampBottom = 42;

bool inGlyph(char letter, std::int32_t x, std::int32_t y) {
    const auto glyph = std::find_if(std::begin(glyphs), std::end(glyphs),
                                    [&](const Glyph& entry) { return entry.letter == letter; });
    return glyph != std::end(glyphs) && x < glyphColumns &&
           (glyph->rows[static_cast<std::size_t>(y)] >> (glyphColumns - 1 - x) & 1) != 0;
}

bool inText(std::string_view text, std::int32_t x, std::int32_t y) {
    if (x < 0 || y < 0 || y >= glyphRows) {
        return false;
    }
    const auto index = static_cast<std::size_t>(x / glyphAdvance);
    return index < text.size() && inGlyph(text[index], x % glyphAdvance, y);
}

// The patches leave a gap of a fifth of a cell on each side.
SceneColor patchAt(double x, double y) {
    constexpr double left = 2.0;
    constexpr double width = (gridWidth - 2 * left) / patchColumns;
    constexpr double height = static_cast<double>(rampTop - topBand - 1) / patchRows;
    constexpr double gap = 0.6;
    const double px = x - left;
    const double py = y - topBand;
    const auto column = static_cast<std::int32_t>(px / width);
    const auto row = static_cast<std::int32_t>(py / height);
    const bool inside = px >= 0.0 && py >= 0.0 && column < patchColumns && row < patchRows &&
                        px - column * width > gap && px - column * width < width - gap &&
                        py - row * height > gap && py - row * height < height - gap;
    return inside ? patches[row][column] : background;
}

}  // namespace

SceneColor CColorChart::at(const PictureShape& shape, std::int32_t row, std::int32_t column) const {
    const double x = static_cast<double>(column) * gridWidth / shape.width;
    const double y = static_cast<double>(row) * gridHeight / shape.height;
    if (x < 8.0 && y < 8.0) {
        return corner;
    }
    if (y < topBand) {
        constexpr Place word = {23, 1};
        return inText("TOP", static_cast<std::int32_t>(x) - word.x,
                      static_cast<std::int32_t>(y) - word.y)
                   ? ink
                   : background;
    }
    if (y >= rampTop && y < rampBottom) {
        const auto step = static_cast<std::uint32_t>(x * rampSteps / gridWidth);
        const std::uint32_t grey = step * 255 / (rampSteps - 1);
        return sceneColor(grey, grey, grey);
    }
    return patchAt(x, y);
}

void CColorChart::stamp(CCanvas& canvas, std::uint32_t frame) const {
    constexpr std::size_t digits = 6;
    std::array<char, digits> text{};
    for (std::size_t i = digits; i-- > 0; frame /= 10) {
        text[i] = static_cast<char>('0' + frame % 10);
    }
    const PictureShape& shape = canvas.shape();
    const std::int32_t point = std::max(1, shape.width / 213);
    const std::int32_t width = point * glyphAdvance * static_cast<std::int32_t>(digits);
    const std::int32_t left = shape.width - width - 3 * point;
    const std::int32_t top = shape.height - (glyphRows + 3) * point;
    for (std::int32_t y = 0; y < glyphRows * point; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            if (left + x >= 0 && top + y >= 0) {
                const bool inked =
                    inText(std::string_view(text.data(), digits), x / point, y / point);
                canvas.put(top + y, left + x, inked ? ink : background);
            }
        }
    }
}

}  // namespace virtual_cameras
