// SPDX-License-Identifier: MIT
// camhost info: the facts of one camera's record, and its picture as it is now.
#include "camhost/base/number_texts.h"
#include "camhost/base/texts.h"
#include "camhost/commands/define_command.h"
#include "camhost/pictures/frame_layout.h"
#include "camhost/settings/setting_json.h"
#include "camhost/settings/settings.h"
#include "velmora/video_channel_record.h"

namespace camhost {

namespace {

std::string sizeText(std::int32_t width, std::int32_t height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

// Each fact as a line and as a member of the result.
class CFacts {
public:
    explicit CFacts(CReport& report) : m_report(report) {}

    void add(std::string_view label, const std::string& key, CJson value, const std::string& text) {
        m_report.line(padded(label, 16) + printable(text));
        m_result.set(key, std::move(value));
    }
    void addText(std::string_view label, const std::string& key, const std::string& text) {
        add(label, key, text, text);
    }
    void addSerial(const CRecordChannel& camera) {
        m_report.line(padded("serial", 16) + printable(camera.serial()));
        if (camera.hasSerial()) {
            m_result.set("serial", camera.serial());
        }
    }
    void addSetting(const Setting& setting) {
        add(setting.key, setting.key, valueJson(setting.type, setting.text), setting.text);
    }
    void addCount(const std::string& key, std::size_t count) {
        add(key, key, count, std::to_string(count));
    }
    // -1 stands for a reading that the camera does not have.
    void addReading(const std::string& key, double value) {
        if (value == -1.0) {
            m_report.line(padded(key, 16) + "none");
        } else {
            add(key, key, value, fixedText(value, 6));
        }
    }
    const CJson& result() const { return m_result; }

private:
    CReport& m_report;
    CJson m_result = CJson::object();
};

void addRecord(CFacts& facts, const CommandContext& context) {
    const VideoChannelRecord& record = context.camera->record();
    facts.addText("adapter", "adapter", context.system.adapterFile());
    facts.addText("name", "name", context.camera->name());
    facts.addSerial(*context.camera);
    facts.add("record", "record_size", record.size, std::to_string(record.size) + " bytes");
    facts.add("max size", "max_size",
              CJson::object({{"width", record.maxWidth}, {"height", record.maxHeight}}),
              sizeText(record.maxWidth, record.maxHeight));
    facts.addReading("exposure", record.exposure);
    facts.addReading("contrast", record.contrast);
    facts.addReading("brightness", record.brightness);
}

void addPresentSettings(CFacts& facts, CSettings& settings) {
    for (const char* key : {"videonorm", "inputchannel", "videoformat", "framerate"}) {
        if (settings.hasKey(key)) {
            facts.addSetting(settings.read(key));
        }
    }
    facts.addCount("settings", settings.keys().size());
    facts.addCount("actions", settings.commands().size());
}

void addPicture(CFacts& facts, const CommandContext& context) {
    const ImageInfo image = context.camera->readImageInfo();
    const std::string type(pixelTypeName(image.pixelType));
    facts.add("picture", "picture",
              CJson::object({{"width", image.width},
                             {"height", image.height},
                             {"line_width", image.lineWidth},
                             {"pixel_type", type},
                             {"pixel_type_code", image.pixelType}}),
              sizeText(image.width, image.height) + " " + type);
}

}  // namespace

class CInfoCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"info", "what the adapter says about one camera and its picture",
                "  camhost -c 1A2B info\n"
                "  camhost -c 1A2B info --json"};
    }

    ExitCode run(CommandContext& context) override {
        CFacts facts(context.report);
        CSettings settings(*context.camera, context.hintPrefix);
        addRecord(facts, context);
        addPresentSettings(facts, settings);
        addPicture(facts, context);
        context.report.setResult(facts.result());
        return ExitCode::Done;
    }
};

template std::unique_ptr<CCommand> makeCommand<CInfoCommand>();

}  // namespace camhost
