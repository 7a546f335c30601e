// SPDX-License-Identifier: MIT
#include "camhost/view/frame_bytes.h"

#include <algorithm>

#include "velmora/host_blocks.h"

namespace camhost {

namespace {

std::size_t widthOf(const FrameLayout& layout) {
    return static_cast<std::size_t>(std::max(0, layout.width));
}

std::size_t heightOf(const FrameLayout& layout) {
    return static_cast<std::size_t>(std::max(0, layout.height));
}

// Pixels of one, or cells of two, side by side and one above the other.
std::vector<std::size_t> keptPlaces(std::size_t length, std::size_t step, std::size_t cell) {
    std::vector<std::size_t> places;
    for (std::size_t first = 0; first + cell <= length; first += step * cell) {
        for (std::size_t i = 0; i < cell; ++i) {
            places.push_back(first + i);
        }
    }
    return places;
}

// A frame whose rows come from the bottom keeps the rows that the picture keeps.
void countFromTheTop(std::vector<std::size_t>& rows, std::size_t height) {
    std::reverse(rows.begin(), rows.end());
    for (std::size_t& row : rows) {
        row = height - 1 - row;
    }
}

CJson frameJson(const ViewFrame& frame, const ReducedFrame& sent, std::size_t step, bool isLost) {
    const auto age = std::chrono::steady_clock::now() - frame.taken;
    CJson json = CJson::object({{"number", frame.number},
                                {"camera", frame.camera},
                                {"width", sent.width},
                                {"height", sent.height},
                                {"rowBytes", sent.rowBytes},
                                {"step", step},
                                {"fullWidth", frame.layout.width},
                                {"fullHeight", frame.layout.height},
                                {"pixelType", pixelTypeName(frame.layout.pixelType)}});
    if (frame.order) {
        json.set("bayer", bayerName(*frame.order));
    }
    json.set("lost", isLost);
    json.set("ageMs", std::chrono::duration_cast<std::chrono::milliseconds>(age).count());
    return json;
}

}  // namespace

ReducedFrame reducedFrame(const ViewFrame& frame, std::size_t step) {
    const FrameLayout& layout = frame.layout;
    const std::size_t cell = layout.pixelType == HOST_PIXEL_RAW8 ? 2 : 1;
    const std::size_t pixelBytes = layout.pixelType == HOST_PIXEL_RGB24 ? 3 : 1;
    const std::vector<std::size_t> columns = keptPlaces(widthOf(layout), step, cell);
    std::vector<std::size_t> rows = keptPlaces(heightOf(layout), step, cell);
    ReducedFrame sent{columns.size(), rows.size(), columns.size() * pixelBytes, {}};
    if (layout.pixelType == HOST_PIXEL_RGB24) {
        countFromTheTop(rows, heightOf(layout));
    }
    sent.bytes.resize(sent.rowBytes * sent.height);
    const std::size_t distance = rowBytes(layout);
    const auto all = frame.buffer.frame();
    std::uint8_t* to = sent.bytes.data();
    for (const std::size_t row : rows) {
        const auto from = all.subspan(row * distance, distance);
        for (const std::size_t column : columns) {
            to = std::copy_n(&from[column * pixelBytes], pixelBytes, to);
        }
    }
    return sent;
}

HttpResponse frameResponse(const SharedFrame& frame, std::size_t step, bool isLost) {
    HttpResponse response{.type = "application/octet-stream"};
    ReducedFrame sent{widthOf(frame->layout), heightOf(frame->layout), rowBytes(frame->layout), {}};
    if (step == 1) {
        response.body = {{frame, frame->buffer.frame()}};
    } else {
        auto reduced = std::make_shared<ReducedFrame>(reducedFrame(*frame, step));
        response.body = {{reduced, reduced->bytes}};
        sent.width = reduced->width;
        sent.height = reduced->height;
        sent.rowBytes = reduced->rowBytes;
    }
    response.headers.emplace_back("X-Frame", frameJson(*frame, sent, step, isLost).toText());
    return response;
}

}  // namespace camhost
