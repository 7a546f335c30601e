// SPDX-License-Identifier: MIT
#include "acquisition/frame_sink.h"

#include <exception>
#include <string>
#include <utility>

#include "acquisition/color_formats.h"
#include "capture/conversions.h"
#include "capture/video_formats.h"
#include "platform/log_trace.h"

namespace {

struct SinkChoice {
    ColorFormat format;
    const char* trace;
};

constexpr SinkChoice rawFromGrey = {ColorFormat::eY800, " CreateNewSink ck_pt_RAW8 eY800\n"};
constexpr SinkChoice rawFromColor = {ColorFormat::eRGB32, " CreateNewSink ck_pt_RAW8 eRGB32\n"};
// The text says RAW8 for colour as well, and ends in a blank. Kept as it was.
constexpr SinkChoice color = {ColorFormat::eRGB24, " CreateNewSink ck_pt_RAW8 eRGB24 \n"};
constexpr SinkChoice grey = {ColorFormat::eY800, " CreateNewSink default eY800\n"};

bool isY800(const DShowLib::VideoFormatItem& format) {
    return isY800Text(toNarrow(format.toString_()));
}

// What serves a pixel type, for the current video format.
SinkChoice choiceFor(PixelType pixelType, const DShowLib::Grabber& grabber) {
    switch (pixelType) {
        case PixelType::raw8:
            return isY800(grabber.getVideoFormat()) ? rawFromGrey : rawFromColor;
        case PixelType::rgb24:
            return color;
        case PixelType::mono8:
            break;
    }
    return grey;
}

DShowLib::smart_ptr<DShowLib::FrameHandlerSink> createSink(const DShowLib::FrameTypeInfo& frameType,
                                                           std::uint32_t bufferCount) {
    DShowLib::FrameHandlerSink::tCreateData data;
    data.bufferCount = bufferCount;
    if (frameType.subtype != GUID{}) {
        data.frameTypes.push_back(frameType);
    }
    return DShowLib::FrameHandlerSink::create(data);
}

// The trace says nothing, so what it asks the library for must not fail the sink.
void traceChoice(const DShowLib::Grabber& grabber, const SinkChoice& choice) {
    std::string model;
    try {
        model = toNarrow(grabber.getDev().getFriendlyName_());
    } catch (...) {
        // Traced without a name.
    }
    LogTrace(traceFileName, "%s %s \n", model.c_str(), choice.trace);
}

}  // namespace

bool CFrameSink::SelectDefaultVideoFormat() {
    m_rawFromRgb32 = false;
    const auto formats = toStandard(availableVideoFormats(m_grabber));
    if (formats.empty()) {
        return false;
    }
    // Every grey format is made current in turn: the last one stays.
    bool offersOther = false;
    for (const auto& format : formats) {
        if (isY800(format)) {
            m_grabber.setVideoFormat(format);
        } else {
            offersOther = true;
        }
    }
    m_rawFromRgb32 = !isY800(m_grabber.getVideoFormat());
    return offersOther;
}

void CFrameSink::CreateNewSink(PixelType pixelType) {
    const SinkChoice choice = choiceFor(pixelType, m_grabber);
    constexpr std::uint32_t ringSize = 5;
    auto sink = createSink({ColorformatToSubtype(choice.format), 0, 0, 0}, ringSize);
    traceChoice(m_grabber, choice);
    bool accepted = false;
    if (sink) {
        sink->setSnapMode(false);
        accepted = m_grabber.setSinkType(DShowLib::smart_ptr<DShowLib::GrabberSinkType>(sink));
    }
    // Live, the grabber goes on delivering into the sink that it has, and the copy has
    // to know that one.
    if (!accepted && m_grabber.isLive()) {
        return;
    }
    m_sink = std::move(sink);
    m_pixelType = pixelType;
    if (pixelType == PixelType::raw8) {
        m_rawFromRgb32 = choice.format == ColorFormat::eRGB32;
    }
}

std::optional<std::uint32_t> CFrameSink::outputSize() const {
    DShowLib::FrameTypeInfo frameType{};
    if (!m_sink || !m_sink->getOutputFrameType(frameType)) {
        return std::nullopt;
    }
    return frameType.bufferSize;
}

void CFrameSink::unlockRing() const {
    const auto buffers = m_sink ? m_sink->getMemBufferCollection()
                                : DShowLib::smart_ptr<DShowLib::MemBufferCollection>();
    if (!buffers) {
        return;
    }
    // One buffer that fails must not leave the others locked.
    std::exception_ptr failure;
    for (ULONG i = 0; i < buffers->getBufferCount(); ++i) {
        try {
            if (const auto buffer = (*buffers)[i]; buffer) {
                buffer->unlock();
            }
        } catch (...) {
            failure = std::current_exception();
        }
    }
    if (failure) {
        std::rethrow_exception(failure);
    }
}
