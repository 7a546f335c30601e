// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/replay.h"

#include <algorithm>
#include <utility>

namespace virtual_cameras {

namespace {

// Which pixel of the picture is seen at each place along one side of the frame.
class CSide {
public:
    CSide(PictureFit fit, std::int32_t picture, std::int32_t frame) noexcept {
        if (fit == PictureFit::scale) {
            m_last = frame;
            m_step = (static_cast<std::int64_t>(picture) << 32) / frame;
            m_at = m_step / 2;
        } else {
            const std::int32_t shift = (picture - frame) / 2;
            m_first = std::max(0, -shift);
            m_last = std::min(frame, picture - shift);
            m_step = std::int64_t{1} << 32;
            m_at = static_cast<std::int64_t>(m_first + shift) << 32;
        }
    }
    std::int32_t first() const noexcept { return m_first; }
    std::int32_t last() const noexcept { return m_last; }
    std::size_t pixelAt(std::int32_t place) const noexcept {
        return static_cast<std::size_t>((m_at + m_step * (place - m_first)) >> 32);
    }

private:
    // The frame's places that show the picture; behind the last.
    std::int32_t m_first = 0;
    std::int32_t m_last = 0;
    // Of 32 binary places.
    std::int64_t m_at = 0;
    std::int64_t m_step = 0;
};

}  // namespace

CReplayScene::CReplayScene(std::shared_ptr<const Film> film, PictureFit fit)
    : m_film(std::move(film)), m_fit(fit) {}

SceneColor CReplayScene::at(const PictureShape&, std::int32_t, std::int32_t) const {
    return sceneColor(0, 0, 0);
}

void CReplayScene::stamp(CCanvas& canvas, std::uint32_t frame) const {
    const FilmPicture& picture = (*m_film)[(frame - 1) % m_film->size()];
    const CSide columns(m_fit, picture.width, canvas.shape().width);
    const CSide rows(m_fit, picture.height, canvas.shape().height);
    for (std::int32_t row = rows.first(); row < rows.last(); ++row) {
        const SceneColor* const pixels =
            &picture.pixels[rows.pixelAt(row) * static_cast<std::size_t>(picture.width)];
        for (std::int32_t column = columns.first(); column < columns.last(); ++column) {
            canvas.put(row, column, pixels[columns.pixelAt(column)]);
        }
    }
}

}  // namespace virtual_cameras
