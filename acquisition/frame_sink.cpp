// SPDX-License-Identifier: MIT
#include "acquisition/frame_sink.h"

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
    const auto previousSink = m_sink;
    const bool previousRaw = m_rawFromRgb32;
    const SinkChoice choice = choiceFor(pixelType, m_grabber);
    if (pixelType == PixelType::raw8) {
        m_rawFromRgb32 = choice.format == ColorFormat::eRGB32;
    }

    constexpr std::uint32_t ringSize = 5;
    m_sink = createSink({ColorformatToSubtype(choice.format), 0, 0, 0}, ringSize);
    LogTrace(traceFileName, "%s %s \n", toNarrow(m_grabber.getDev().getFriendlyName_()).c_str(),
             choice.trace);
    if (m_sink) {
        m_sink->setSnapMode(false);
        const bool accepted =
            m_grabber.setSinkType(DShowLib::smart_ptr<DShowLib::GrabberSinkType>(m_sink));
        // Live, the grabber goes on delivering into the sink that it has, and the
        // copy has to know that one.
        if (!accepted && m_grabber.isLive()) {
            m_sink = previousSink;
            m_rawFromRgb32 = previousRaw;
        }
    }
}

std::uint32_t CFrameSink::outputSize() const {
    DShowLib::FrameTypeInfo frameType{};
    if (m_sink) {
        m_sink->getOutputFrameType(frameType);
    }
    return frameType.bufferSize;
}

void CFrameSink::unlockRing() const {
    if (!m_sink) {
        return;
    }
    const auto buffers = m_sink->getMemBufferCollection();
    if (!buffers) {
        return;
    }
    for (ULONG i = 0; i < buffers->getBufferCount(); ++i) {
        if (const auto buffer = (*buffers)[i]; buffer) {
            buffer->unlock();
        }
    }
}
