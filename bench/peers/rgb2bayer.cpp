// SPDX-License-Identifier: MIT
// Calls the element's own transform, without a pipeline around it. It takes its pixels
// in another byte order than a camera gives them: the time compares, the bytes do not.
#include <gst/base/gstbasetransform.h>
#include <gst/gst.h>

#include "bench/peers/mosaic_peer.h"

namespace bench {

namespace {

class CRgb2bayerPeer : public CMosaicPeer {
public:
    explicit CRgb2bayerPeer(GstElement* element) : m_element(element) {}
    ~CRgb2bayerPeer() override {
        freeBuffers();
        gst_element_set_state(m_element, GST_STATE_NULL);
        gst_object_unref(m_element);
    }

    void prepare(const std::vector<std::uint8_t*>& sources, std::uint8_t* destination,
                 std::int32_t width, std::int32_t height) override {
        freeBuffers();
        const auto pixels = static_cast<gsize>(width) * static_cast<gsize>(height);
        for (std::uint8_t* source : sources) {
            m_sources.push_back(wrap(source, pixels * 4));
        }
        m_destination = wrap(destination, pixels);
        negotiate(width, height);
    }
    void run(std::size_t source) override {
        auto* transform = GST_BASE_TRANSFORM(m_element);
        GST_BASE_TRANSFORM_GET_CLASS(transform)->transform(transform, m_sources[source],
                                                           m_destination);
    }

private:
    static GstBuffer* wrap(std::uint8_t* bytes, gsize size) {
        return gst_buffer_new_wrapped_full(static_cast<GstMemoryFlags>(0), bytes, size, 0, size,
                                           nullptr, nullptr);
    }
    void freeBuffers() {
        for (GstBuffer* buffer : m_sources) {
            gst_buffer_unref(buffer);
        }
        m_sources.clear();
        if (m_destination != nullptr) {
            gst_buffer_unref(m_destination);
            m_destination = nullptr;
        }
    }
    // What an upstream element would say first.
    void negotiate(std::int32_t width, std::int32_t height) {
        gst_element_set_state(m_element, GST_STATE_NULL);
        gst_element_set_state(m_element, GST_STATE_PAUSED);
        GstPad* sink = gst_element_get_static_pad(m_element, "sink");
        gst_pad_send_event(sink, gst_event_new_stream_start("bench"));
        GstCaps* caps = gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "ARGB", "width",
                                            G_TYPE_INT, width, "height", G_TYPE_INT, height,
                                            "framerate", GST_TYPE_FRACTION, 30, 1, nullptr);
        gst_pad_send_event(sink, gst_event_new_caps(caps));
        gst_caps_unref(caps);
        GstSegment segment;
        gst_segment_init(&segment, GST_FORMAT_TIME);
        gst_pad_send_event(sink, gst_event_new_segment(&segment));
        gst_object_unref(sink);
    }

    GstElement* m_element;
    std::vector<GstBuffer*> m_sources;
    GstBuffer* m_destination = nullptr;
};

}  // namespace

std::unique_ptr<CMosaicPeer> makeRgb2bayerPeer(std::string& whyNot) {
    GError* error = nullptr;
    if (gst_init_check(nullptr, nullptr, &error) == FALSE) {
        whyNot = error != nullptr ? error->message : "GStreamer does not start";
        g_clear_error(&error);
        return nullptr;
    }
    GstElement* element = gst_element_factory_make("rgb2bayer", nullptr);
    if (element == nullptr) {
        whyNot = "no rgb2bayer (package gstreamer1.0-plugins-bad)";
        return nullptr;
    }
    return std::make_unique<CRgb2bayerPeer>(element);
}

}  // namespace bench
