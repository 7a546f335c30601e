// SPDX-License-Identifier: MIT
// camhost list: every camera of the adapter, one line each.
#include <algorithm>

#include "host/commands.h"
#include "host/text_tools.h"

namespace camhost {

namespace {

std::string sizeText(const VideoChannelRecord& record) {
    return std::to_string(record.maxWidth) + "x" + std::to_string(record.maxHeight);
}

std::string stateText(CChannel& camera) {
    ImageInfo image{};
    std::uint32_t status = 0;
    return camera.imageInfo(image, status).done() ? "ready" : "no device";
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

ExitCode runList(CommandContext& context) {
    std::vector<Row> rows{{"#", "serial", "name", "max size", "state"}};
    CData result = CData::array();
    for (const auto& camera : context.cameras.all()) {
        const Row row{std::to_string(camera->index()), printable(camera->serial()),
                      printable(camera->name()), sizeText(camera->record()), stateText(*camera)};
        CData data;
        data.set("index", camera->index());
        data.set("serial", camera->serial());
        data.set("name", camera->name());
        data.set("max_width", camera->record().maxWidth);
        data.set("max_height", camera->record().maxHeight);
        data.set("state", row.state);
        result.add(std::move(data));
        rows.push_back(row);
    }
    if (rows.size() > 1) {
        printRows(rows, context.report);
    } else {
        context.report.message("no cameras");
    }
    context.report.setResult(std::move(result));
    return ExitCode::Done;
}

}  // namespace camhost
