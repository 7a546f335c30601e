// SPDX-License-Identifier: MIT
#include "camhost/pictures/frame_texts.h"

#include <algorithm>
#include <utility>

#include "velmora/host_blocks.h"

namespace camhost {

VideoFormats videoFormatsOf(std::string current,
                            const std::optional<std::vector<std::string>>& choices) {
    const bool areAllGrey = choices && !isMadeFromColours(current) &&
                            std::none_of(choices->begin(), choices->end(), isMadeFromColours);
    return {std::move(current), areAllGrey};
}

std::optional<BayerOrder> bayerOf(const FrameLayout& layout, const VideoFormats& formats,
                                  std::optional<BayerOrder> chosen) {
    if (layout.pixelType != HOST_PIXEL_RAW8) {
        return std::nullopt;
    }
    if (chosen || formats.areAllGrey) {
        return chosen;
    }
    return assumedBayer(formats.current, layout.height);
}

std::string pixelText(const FrameLayout& layout, std::optional<BayerOrder> order, bool wasChosen) {
    std::string text(pixelTypeName(layout.pixelType));
    if (order) {
        text += " " + std::string(bayerName(*order)) + (wasChosen ? " as chosen" : " as delivered");
    }
    return text;
}

PngTexts frameTexts(const FrameLayout& layout, std::optional<BayerOrder> order, bool demosaic,
                    const std::string& serial, std::uint64_t number) {
    PngTexts texts{{"Software", "camhost"},
                   {"PixelType", std::string(pixelTypeName(layout.pixelType))}};
    if (order) {
        texts.emplace_back("BayerOrder", bayerName(*order));
        if (demosaic) {
            texts.emplace_back("Demosaic", "fast");
        }
    }
    texts.emplace_back("RowOrder", rowOrderText(layout.pixelType));
    texts.emplace_back("CameraSerial", serial);
    texts.emplace_back("FrameNumber", std::to_string(number));
    return texts;
}

}  // namespace camhost
