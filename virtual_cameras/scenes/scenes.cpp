// SPDX-License-Identifier: MIT
#include "virtual_cameras/scenes/scenes.h"

#include <algorithm>
#include <type_traits>

#include "virtual_cameras/scenes/color_chart.h"
#include "virtual_cameras/scenes/scene_code.h"

namespace virtual_cameras {

namespace {

SceneColor counterColor(std::uint32_t frame, std::uint32_t row, std::uint32_t column) {
    return {counterValue(frame, row, column, Plane::blue),
            counterValue(frame, row, column, Plane::green),
            counterValue(frame, row, column, Plane::red),
            counterValue(frame, row, column, Plane::grey)};
}

class CCounterScene final : public CScene {
public:
    SceneColor at(const PictureShape&, std::int32_t row, std::int32_t column) const override {
        return counterColor(0, static_cast<std::uint32_t>(row), static_cast<std::uint32_t>(column));
    }

    void stamp(CCanvas& canvas, std::uint32_t frame) const override {
        constexpr std::int32_t first = 4;
        constexpr std::int32_t step = 8;
        SceneColor four[4];
        for (std::uint32_t i = 0; i < 4; ++i) {
            four[i] = counterColor(frame, 0, first + i);
        }
        for (std::int32_t row = 0; row < canvas.shape().height; ++row) {
            canvas.putFours(row, first, step, four);
        }
    }
};

class CGradientScene final : public CScene {
public:
    SceneColor at(const PictureShape& shape, std::int32_t, std::int32_t column) const override {
        const auto grey = static_cast<std::uint32_t>(column * 256 / shape.width);
        return sceneColor(grey, grey, grey);
    }
    void stamp(CCanvas&, std::uint32_t) const override {}
};

class CFlatScene final : public CScene {
public:
    explicit CFlatScene(const SceneSettings& settings)
        : m_color(sceneColor(settings.value, settings.value, settings.value)) {}
    SceneColor at(const PictureShape&, std::int32_t, std::int32_t) const override {
        return m_color;
    }
    void stamp(CCanvas&, std::uint32_t) const override {}

private:
    SceneColor m_color;
};

// The same seed and frame number give the same picture.
class CNoiseScene final : public CScene {
public:
    explicit CNoiseScene(const SceneSettings& settings) : m_seed(settings.seed) {}
    SceneColor at(const PictureShape&, std::int32_t, std::int32_t) const override {
        return sceneColor(0, 0, 0);
    }
    void stamp(CCanvas& canvas, std::uint32_t frame) const override {
        std::uint64_t state =
            (static_cast<std::uint64_t>(m_seed) << 32 | frame) ^ 0x9E3779B97F4A7C15U;
        for (std::int32_t row = 0; row < canvas.shape().height; ++row) {
            for (std::int32_t column = 0; column < canvas.shape().width; ++column) {
                state ^= state << 13;
                state ^= state >> 7;
                state ^= state << 17;
                canvas.put(row, column,
                           {static_cast<std::uint8_t>(state), static_cast<std::uint8_t>(state >> 8),
                            static_cast<std::uint8_t>(state >> 16),
                            static_cast<std::uint8_t>(state >> 24)});
            }
        }
    }

private:
    std::uint32_t m_seed;
};

template <class Scene>
std::unique_ptr<CScene> made([[maybe_unused]] const SceneSettings& settings) {
    if constexpr (std::is_constructible_v<Scene, const SceneSettings&>) {
        return std::make_unique<Scene>(settings);
    } else {
        return std::make_unique<Scene>();
    }
}

std::unique_ptr<CScene> replayOf(const SceneSettings& settings) {
    return std::make_unique<CReplayScene>(settings.film, settings.fit);
}

constexpr SceneKind kinds[] = {
    {"counter", made<CCounterScene>},   {"colorchart", made<CColorChart>},
    {"gradient", made<CGradientScene>}, {"noise", made<CNoiseScene>},
    {"flat", made<CFlatScene>},         {"replay", replayOf, true}};

}  // namespace

std::span<const SceneKind> sceneKinds() {
    return kinds;
}

const SceneKind* sceneCalled(std::string_view name) {
    const auto found = std::find_if(std::begin(kinds), std::end(kinds),
                                    [&](const SceneKind& kind) { return kind.name == name; });
    return found != std::end(kinds) ? &*found : nullptr;
}

const SceneKind& usualScene() {
    return *sceneCalled("colorchart");
}

}  // namespace virtual_cameras
