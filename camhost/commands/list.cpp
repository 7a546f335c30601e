// SPDX-License-Identifier: MIT
// camhost list: every camera of the adapter, one line each.
#include <algorithm>

#include "camhost/base/texts.h"
#include "camhost/camera/adapter_call.h"
#include "camhost/commands/define_command.h"
#include "velmora/video_channel_record.h"

namespace camhost {

namespace {

std::string sizeText(const VideoChannelRecord& record) {
    return std::to_string(record.maxWidth) + "x" + std::to_string(record.maxHeight);
}

// One camera that fails hides no other.
std::string stateText(CRecordChannel& camera, CReport& report) {
    try {
        ImageInfo image{};
        std::uint32_t status = 0;
        return camera.imageInfo(image, status).done() ? "ready" : "no device";
    } catch (const AdapterFailure& failure) {
        report.warning(camera.selector() + ": " + failure.message);
        return "failing";
    }
}

struct Row {
    std::string index;
    std::string serial;
    std::string name;
    std::string size;
    std::string state;
};

void printRows(const std::vector<Row>& rows, CReport& report) {
    std::size_t serial = 0;
    std::size_t name = 0;
    std::size_t size = 0;
    for (const Row& row : rows) {
        serial = std::max(serial, displayWidth(row.serial));
        name = std::max(name, displayWidth(row.name));
        size = std::max(size, displayWidth(row.size));
    }
    for (const Row& row : rows) {
        report.line(padded(row.index, 3) + padded(row.serial, serial + 2) +
                    padded(row.name, name + 2) + padded(row.size, size + 2) + row.state);
    }
}

}  // namespace

class CListCommand : public CCommand {
public:
    CommandHelp help() const override {
        return {"list", "cameras: index, serial, name, size, state",
                "  camhost list\n"
                "  camhost --rig standard list --json"};
    }

    bool needsCamera() const override { return false; }

    ExitCode run(CommandContext& context) override {
        std::vector<Row> rows{{"#", "serial", "name", "max size", "state"}};
        CJson result = CJson::array();
        for (const auto& camera : context.cameras.all()) {
            const VideoChannelRecord& record = camera->record();
            rows.push_back({std::to_string(camera->index()), printable(camera->serial()),
                            printable(camera->name()), sizeText(record),
                            stateText(*camera, context.report)});
            CJson row = identityJson(*camera);
            row.set("max_width", record.maxWidth);
            row.set("max_height", record.maxHeight);
            row.set("state", rows.back().state);
            result.add(std::move(row));
        }
        if (rows.size() > 1) {
            printRows(rows, context.report);
        } else {
            context.report.message("no cameras");
        }
        context.report.setResult(std::move(result));
        return ExitCode::Done;
    }
};

template std::unique_ptr<CCommand> makeCommand<CListCommand>();

}  // namespace camhost
