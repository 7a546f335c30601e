// SPDX-License-Identifier: MIT
// camhost info: the facts of one camera's record, and its picture as it is now.
#include "host/commands.h"
#include "host/frame_image.h"
#include "host/settings.h"
#include "host/text_tools.h"

namespace camhost {

namespace {

class CInfoLines {
public:
    CInfoLines(CReport& report, CData& data) : m_report(report), m_data(data) {}

    void add(std::string_view label, std::string_view key, CData value, const std::string& text) {
        m_report.line(padded(label, 16) + printable(text));
        m_data.set(key, std::move(value));
    }
    void addText(std::string_view label, std::string_view key, const std::string& text) {
        add(label, key, text, text);
    }
    // -1 stands for a reading that the camera does not have.
    void addReading(std::string_view label, std::string_view key, double value) {
        if (value == -1.0) {
            m_report.line(padded(label, 16) + "none");
        } else {
            add(label, key, value, fixedText(value, 6));
        }
    }

private:
    CReport& m_report;
    CData& m_data;
};

void addRecord(CInfoLines& lines, const CommandContext& context) {
    const VideoChannelRecord& record = context.camera->record();
    lines.addText("adapter", "adapter", context.system.adapterFile());
    lines.addText("name", "name", context.camera->name());
    lines.addText("serial", "serial", context.camera->serial());
    lines.add("record", "record_size", static_cast<std::int64_t>(record.size),
              std::to_string(record.size) + " bytes");
    CData size;
    size.set("width", record.maxWidth);
    size.set("height", record.maxHeight);
    lines.add("max size", "max_size", std::move(size),
              std::to_string(record.maxWidth) + "x" + std::to_string(record.maxHeight));
    lines.addReading("exposure", "exposure", record.exposure);
    lines.addReading("contrast", "contrast", record.contrast);
    lines.addReading("brightness", "brightness", record.brightness);
}

void addPicture(CInfoLines& lines, const CommandContext& context) {
    ImageInfo image{};
    std::uint32_t status = 0;
    const Reply reply = context.camera->imageInfo(image, status);
    if (!reply.done()) {
        const bool lost = status == HOST_STATUS_NO_DEVICE;
        throw Failure{lost ? ExitCode::DeviceLost : ExitCode::Refused,
                      lost ? "device_lost" : "refused",
                      reply.message,
                      reply.message,
                      {}};
    }
    CData data;
    data.set("width", image.width);
    data.set("height", image.height);
    data.set("line_width", image.lineWidth);
    data.set("pixel_type", std::string(pixelTypeName(image.pixelType)));
    data.set("pixel_type_code", static_cast<std::int64_t>(image.pixelType));
    lines.add("picture", "picture", std::move(data),
              std::to_string(image.width) + "x" + std::to_string(image.height) + " " +
                  std::string(pixelTypeName(image.pixelType)));
}

void addCurrentSettings(CInfoLines& lines, CSettings& settings) {
    for (const char* key : {"videonorm", "inputchannel", "videoformat", "framerate"}) {
        if (settings.hasKey(key)) {
            lines.addText(key, key, settings.read(key).text);
        }
    }
    lines.add("settings", "settings", static_cast<std::int64_t>(settings.keys().size()),
              std::to_string(settings.keys().size()));
    lines.add("actions", "actions", static_cast<std::int64_t>(settings.commands().size()),
              std::to_string(settings.commands().size()));
}

}  // namespace

ExitCode runInfo(CommandContext& context) {
    CData result = CData::object();
    CInfoLines lines(context.report, result);
    CSettings settings(*context.camera);
    addRecord(lines, context);
    addCurrentSettings(lines, settings);
    addPicture(lines, context);
    context.report.setResult(std::move(result));
    return ExitCode::Done;
}

}  // namespace camhost
