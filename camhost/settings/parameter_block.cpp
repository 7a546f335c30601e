// SPDX-License-Identifier: MIT
#include "camhost/settings/parameter_block.h"

#include <cmath>

#include "camhost/base/number_texts.h"

namespace camhost {

namespace {

struct WholeRange {
    std::int32_t minimum = 0;
    std::int32_t maximum = 0;
    std::optional<std::int32_t> value;

    std::string textAt(double fraction) const {
        const double span = static_cast<double>(maximum) - minimum;
        return fixedText(minimum + std::trunc(span * fraction), 0);
    }
};

std::optional<WholeRange> rangeOf(const Setting& setting) {
    const auto minimum = wholeInteger(setting.minimum.value_or(""));
    const auto maximum = wholeInteger(setting.maximum.value_or(""));
    if (!minimum || !maximum) {
        return std::nullopt;
    }
    return WholeRange{*minimum, *maximum, wholeInteger(setting.text)};
}

// Without a reading for what the camera does not have.
Setting present(CSettings& settings, const char* key) {
    return settings.hasKey(key) ? settings.read(key) : Setting{};
}

double presentExposure(CSettings& settings, const VideoChannelRecord& record) {
    return wholeNumber(settings.read(exposureKey).text).value_or(record.exposure);
}

double presentFraction(CSettings& settings, const char* key) {
    const auto range = rangeOf(present(settings, key));
    return range && range->value ? fractionFor(range->minimum, range->maximum, *range->value) : 0.0;
}

bool presentSwitch(CSettings& settings, const char* key) {
    return present(settings, key).text == "true";
}

std::string textAt(CSettings& settings, const char* key, double fraction) {
    const auto range = rangeOf(settings.read(key));
    return range ? range->textAt(fraction) : std::string();
}

std::string switchText(bool on) {
    return on ? "true" : "false";
}

ExpectedSetting fractionOf(const char* parameter, CSettings& settings, const char* key,
                           double fraction) {
    const std::string text = textAt(settings, key, fraction);
    return {parameter, key, text, fixedText(fraction, 3) + " of its range, which is " + text};
}

}  // namespace

CameraParameterBlock makeParameterBlock(CSettings& settings, const VideoChannelRecord& record,
                                        const AskedParameters& asked) {
    CameraParameterBlock block{};
    block.exposure = asked.exposure ? *asked.exposure : presentExposure(settings, record);
    block.contrast = asked.contrast ? *asked.contrast : presentFraction(settings, contrastKey);
    block.brightness =
        asked.brightness ? *asked.brightness : presentFraction(settings, brightnessKey);
    block.triggerEnable = asked.trigger.value_or(presentSwitch(settings, triggerKey)) ? 1 : 0;
    block.triggerPolarity = asked.polarity.value_or(presentSwitch(settings, polarityKey)) ? 1 : 0;
    const auto region =
        asked.region.value_or(std::array<std::int32_t, 4>{0, 0, record.maxWidth, record.maxHeight});
    block.roiLeft = region[0];
    block.roiTop = region[1];
    block.roiWidth = region[2];
    block.roiHeight = region[3];
    return block;
}

std::vector<ExpectedSetting> expectedSettings(CSettings& settings, const AskedParameters& asked) {
    std::vector<ExpectedSetting> expected;
    if (asked.exposure) {
        const std::string text = fixedText(*asked.exposure, 6);
        expected.push_back({"exposure", exposureKey, text, text});
    }
    if (asked.contrast) {
        expected.push_back(fractionOf("contrast", settings, contrastKey, *asked.contrast));
    }
    if (asked.brightness) {
        expected.push_back(fractionOf("brightness", settings, brightnessKey, *asked.brightness));
    }
    if (asked.trigger) {
        const std::string text = switchText(*asked.trigger);
        expected.push_back({"trigger", triggerKey, text, text});
    }
    if (asked.polarity) {
        const std::string text = switchText(*asked.polarity);
        expected.push_back({"polarity", polarityKey, text, text});
    }
    return expected;
}

double fractionFor(std::int32_t minimum, std::int32_t maximum, std::int32_t value) {
    const double span = static_cast<double>(maximum) - minimum;
    const double offset = static_cast<double>(value) - minimum;
    if (span == 0.0 || offset == 0.0) {
        return 0.0;
    }
    // Half a step further, so that the truncation can't lose one.
    return (offset + (offset > 0.0 ? 0.5 : -0.5)) / span;
}

}  // namespace camhost
