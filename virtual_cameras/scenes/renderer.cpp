// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/renderer.h"

#include <cstring>
#include <utility>

namespace virtual_cameras {

CRenderer::CRenderer(std::unique_ptr<CScene> scene, const PictureShape& shape)
    : m_scene(std::move(scene)), m_shape(shape), m_still(pictureBytes(shape)) {}

void CRenderer::setTone(const ToneSettings& settings) {
    m_tone = CTone(settings);
    CCanvas canvas(m_shape, m_tone, m_still.data());
    for (std::int32_t row = 0; row < m_shape.height; ++row) {
        for (std::int32_t column = 0; column < m_shape.width; ++column) {
            canvas.put(row, column, m_scene->at(m_shape, row, column));
        }
    }
}

void CRenderer::render(std::uint32_t frame, std::uint8_t* memory) const {
    std::memcpy(memory, m_still.data(), m_still.size());
    CCanvas canvas(m_shape, m_tone, memory);
    m_scene->stamp(canvas, frame);
}

}  // namespace virtual_cameras
