// SPDX-License-Identifier: MIT
// camhost params: exposure, contrast, brightness, trigger and region in the one
// block that a host applies; what is not named is kept as it is.
#include <array>
#include <string>

#include "camhost/commands/define_command.h"
#include "camhost/settings/parameter_block.h"
#include "camhost/settings/value_guards.h"

namespace camhost {

namespace {

// Of the settings that a block changes, in their order; empty for those that the
// camera does not have.
std::vector<std::string> readBlockTexts(CSettings& settings) {
    std::vector<std::string> texts;
    texts.reserve(blockKeys.size());
    for (const char* key : blockKeys) {
        texts.push_back(settings.hasKey(key) ? settings.read(key).text : "");
    }
    return texts;
}

CJson reportChanges(const std::vector<std::string>& before, const std::vector<std::string>& after,
                    CReport& report) {
    CJson changes = CJson::array();
    for (std::size_t i = 0; i < blockKeys.size(); ++i) {
        if (before[i] != after[i]) {
            const std::string key = blockKeys[i];
            report.line(key + ": " + before[i] + " -> " + after[i]);
            changes.add(CJson::object({{"key", key}, {"before", before[i]}, {"after", after[i]}}));
        }
    }
    return changes;
}

// The block reports nothing itself, so what came of it is read back. Nothing when it
// reads as it should.
std::string shortcoming(CSettings& settings, const ExpectedSetting& expected) {
    const std::string parameter = expected.parameter;
    if (!settings.hasKey(expected.key)) {
        return "the camera has no " + parameter + " (\"" + expected.key + "\")";
    }
    const Setting now = settings.read(expected.key);
    if (!sameValue(now.type, expected.text, now.text)) {
        return parameter + ": asked for " + expected.typed + ", reads " + now.text;
    }
    return {};
}

bool readsAsAsked(CSettings& settings, const AskedParameters& asked, CReport& report) {
    bool all = true;
    for (const ExpectedSetting& expected : expectedSettings(settings, asked)) {
        if (const std::string problem = shortcoming(settings, expected); !problem.empty()) {
            report.warning(problem);
            all = false;
        }
    }
    return all;
}

std::string regionText(const std::array<std::int32_t, 4>& region) {
    std::string text;
    for (const std::int32_t edge : region) {
        text += (text.empty() ? "" : ",") + std::to_string(edge);
    }
    return text;
}

// Some adapters take a region and go on delivering whole pictures.
bool hasRegion(CRecordChannel& camera, const AskedParameters& asked, CReport& report) {
    if (!asked.region) {
        return true;
    }
    const ImageInfo image = camera.readImageInfo();
    const std::array<std::int32_t, 4> now{image.regionLeft, image.regionTop, image.regionWidth,
                                          image.regionHeight};
    if (now == *asked.region) {
        return true;
    }
    report.warning("roi: asked for " + regionText(*asked.region) + ", reads " + regionText(now));
    return false;
}

}  // namespace

class CParamsCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"params", "apply one block of camera parameters",
                "  camhost -c 1A2B params exposure=0.01 contrast=0.5\n"
                "  camhost -c 1A2B params trigger=on polarity=off roi=0,0,640,480"};
    }

    void takeOptions(COptionList& list) override {
        list.words("NAME=VALUE", m_parameters,
                   "exposure=S contrast=F brightness=F trigger=on|off polarity=on|off roi=X,Y,W,H");
        list.flag("--strict", m_strict, "exit 6 when the read-back differs");
    }

    ExitCode run(CommandContext& context) override {
        const AskedParameters asked = parseParameters(m_parameters);
        checkFractions(asked);
        CSettings settings(*context.camera, context.hintPrefix);
        const std::vector<std::string> before = readBlockTexts(settings);
        const Reply reply = context.camera->applyParameters(
            makeParameterBlock(settings, context.camera->record(), asked));
        if (!reply.done()) {
            throw Failure{.code = "refused",
                          .message = "the parameter block was refused",
                          .adapterMessage = reply.message};
        }
        const std::vector<std::string> after = readBlockTexts(settings);
        context.report.setResult(reportChanges(before, after, context.report));
        const bool automaticWentOff = before.front() == "true" && after.front() == "false";
        if (!asked.exposure && automaticWentOff) {
            context.report.warning("the block switches automatic exposure off");
        }
        const bool all = readsAsAsked(settings, asked, context.report);
        const bool region = hasRegion(*context.camera, asked, context.report);
        return m_strict && !(all && region) ? ExitCode::Partial : ExitCode::Done;
    }

private:
    std::vector<std::string> m_parameters;
    bool m_strict = false;
};

template std::unique_ptr<CCommand> makeCommand<CParamsCommand>();

}  // namespace camhost
