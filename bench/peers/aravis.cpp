// SPDX-License-Identifier: MIT
#include <arv.h>

#include <cstring>
#include <stdexcept>

#include "bench/peers/frames_peer.h"
#include "bench/peers/settings_peer.h"

namespace bench {

namespace {

void require(GError* error) {
    if (error != nullptr) {
        const std::string message = error->message;
        g_error_free(error);
        throw std::runtime_error("Aravis: " + message);
    }
}

ArvCamera* openFakeCamera(std::string& whyNot) {
    arv_enable_interface("Fake");
    GError* error = nullptr;
    ArvCamera* camera = arv_camera_new("Fake_1", &error);
    if (camera == nullptr) {
        whyNot = error != nullptr ? error->message : "Aravis has no fake camera";
        g_clear_error(&error);
    }
    return camera;
}

class CAravisSettings : public CSettingsPeer {
public:
    explicit CAravisSettings(ArvCamera* camera)
        : m_camera(camera), m_device(arv_camera_get_device(camera)) {}
    ~CAravisSettings() override { g_object_unref(m_camera); }

    void getInteger() override { get("GainRaw"); }
    void setInteger() override { set("GainRaw", "5", "6"); }
    void getFloat() override { get("ExposureTimeAbs"); }
    void setFloat() override { set("ExposureTimeAbs", "1000.25", "1000.5"); }

private:
    ArvGcFeatureNode* find(const char* name) {
        return ARV_GC_FEATURE_NODE(arv_device_get_feature(m_device, name));
    }
    void get(const char* name) {
        GError* error = nullptr;
        arv_gc_feature_node_get_value_as_string(find(name), &error);
        require(error);
    }
    void set(const char* name, const char* one, const char* other) {
        m_turn = !m_turn;
        GError* error = nullptr;
        arv_gc_feature_node_set_value_from_string(find(name), m_turn ? one : other, &error);
        require(error);
    }

    ArvCamera* m_camera;
    ArvDevice* m_device;
    bool m_turn = false;
};

// A picture that costs nothing: what the camera shows is not the question.
void fillNothing(ArvBuffer*, void*, guint32, guint32, ArvPixelFormat) {}

class CAravisFrames : public CFramesPeer {
public:
    CAravisFrames(ArvCamera* camera, std::int32_t width, std::int32_t height) : m_camera(camera) {
        GError* error = nullptr;
        arv_camera_set_region(camera, 0, 0, width, height, &error);
        require(error);
        arv_camera_set_frame_rate(camera, 1000.0, &error);
        require(error);
        auto* fake =
            arv_fake_device_get_fake_camera(ARV_FAKE_DEVICE(arv_camera_get_device(camera)));
        arv_fake_camera_set_fill_pattern(fake, fillNothing, nullptr);
        m_stream = arv_camera_create_stream(camera, nullptr, nullptr, &error);
        require(error);
        const auto payload = arv_camera_get_payload(camera, &error);
        require(error);
        for (int i = 0; i < 5; ++i) {
            arv_stream_push_buffer(m_stream, arv_buffer_new(payload, nullptr));
        }
    }
    ~CAravisFrames() override {
        g_object_unref(m_stream);
        g_object_unref(m_camera);
    }

    void start() override {
        GError* error = nullptr;
        arv_camera_start_acquisition(m_camera, &error);
        require(error);
    }
    void stop() override {
        GError* error = nullptr;
        arv_camera_stop_acquisition(m_camera, &error);
        require(error);
    }
    void grab(std::uint8_t* destination) override {
        ArvBuffer* buffer = arv_stream_pop_buffer(m_stream);
        gsize size = 0;
        const void* data = arv_buffer_get_data(buffer, &size);
        std::memcpy(destination, data, size);
        arv_stream_push_buffer(m_stream, buffer);
    }

private:
    ArvCamera* m_camera;
    ArvStream* m_stream = nullptr;
};

}  // namespace

std::unique_ptr<CSettingsPeer> makeAravisSettings(std::string& whyNot) {
    ArvCamera* camera = openFakeCamera(whyNot);
    return camera != nullptr ? std::make_unique<CAravisSettings>(camera) : nullptr;
}

std::unique_ptr<CFramesPeer> makeAravisFrames(std::int32_t width, std::int32_t height,
                                              std::string& whyNot) {
    ArvCamera* camera = openFakeCamera(whyNot);
    return camera != nullptr ? std::make_unique<CAravisFrames>(camera, width, height) : nullptr;
}

}  // namespace bench
