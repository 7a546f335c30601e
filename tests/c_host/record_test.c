/* SPDX-License-Identifier: MIT
 * A record filled and driven in C, with every field also reached by its plain
 * offset, as a host without the header would.
 */
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "velmora/video_channel_record.h"

static int failures = 0;

static void check(int holds, const char* claim) {
    if (!holds) {
        fprintf(stderr, "failed: %s\n", claim);
        ++failures;
    }
}

/* Each entry answers with its own number and leaves a trace in the context. */
static int32_t answer(void* context, int32_t number) {
    *(int32_t*)context = number;
    return number;
}

static int32_t setCameraParameters(char* errorText, void* context,
                                   const CameraParameterBlock* parameters) {
    (void)errorText;
    return answer(context, parameters->roiHeight);
}

static int32_t getImageInfo(char* errorText, void* context, ImageInfo* image, uint32_t* status) {
    (void)errorText;
    image->pixelType = HOST_PIXEL_RGB24;
    *status = HOST_STATUS_DONE;
    return answer(context, 2);
}

static int32_t waitFrame(char* errorText, void* context, uint32_t* status) {
    strcpy(errorText, "The video capture device is disconnected.");
    *status = HOST_STATUS_NO_DEVICE;
    return answer(context, 3);
}

static int32_t copyFrame(char* errorText, void* context, void* destination, uint32_t* status) {
    (void)errorText;
    *(uint8_t*)destination = 0xA5;
    *status = HOST_STATUS_NO_FRAME;
    return answer(context, 4);
}

static int32_t getPropertyName(char* errorText, void* context, int32_t index, char* name) {
    (void)errorText;
    strcpy(name, "videoformat");
    return answer(context, index);
}

static int32_t closeChannel(char* errorText, void* context) {
    (void)errorText;
    return answer(context, 14);
}

/* The bytes at an offset of the record, as a pointer. */
static void* pointerAt(const VideoChannelRecord* record, size_t offset) {
    void* pointer = NULL;
    memcpy(&pointer, (const char*)record + offset, sizeof(pointer));
    return pointer;
}

static void callsReachTheirEntries(const VideoChannelRecord* record) {
    char text[HOST_TEXT_BYTES] = "";
    char name[HOST_TEXT_BYTES] = "";
    uint8_t pixel = 0;
    uint32_t status = 0;
    ImageInfo image = {0};
    CameraParameterBlock parameters = {0};
    parameters.roiHeight = 1;

    check(record->SetCameraParameters(text, record->context, &parameters) == 1, "parameters");
    check(record->GetImageInfo(text, record->context, &image, &status) == 2, "image info");
    check(image.pixelType == 7 && status == 0, "the image info is filled");
    check(record->WaitFrame(text, record->context, &status) == 3, "wait");
    check(status == 8192, "a lost device is status 8192");
    check(strcmp(text, "The video capture device is disconnected.") == 0, "the text of a wait");
    check(record->CopyFrame(text, record->context, &pixel, &status) == 4, "copy");
    check(pixel == 0xA5 && status == 4096, "no frame is status 4096");
    check(record->GetPropertyName(text, record->context, 10, name) == 10, "name");
    check(strcmp(name, "videoformat") == 0, "the name is filled");
    check(record->CloseChannel(text, record->context) == 14, "close");
    check(*(int32_t*)record->context == 14, "the context came along");
}

static void fieldsLieWhereHostsLook(VideoChannelRecord* record) {
    char* bytes = (char*)record;
    const double exposure = 0.25;
    const int32_t width = 1280;

    check(sizeof(VideoChannelRecord) == 680, "the record has 680 bytes");
    check(sizeof(ImageInfo) == 44, "the image description has 44 bytes");
    check(pointerAt(record, 8) == record->context, "the context is at 8");
    memcpy(bytes + 88, "name", 5);
    check(strcmp(record->deviceName, "name") == 0, "the device name is at 88");
    memcpy(bytes + 344, "1A2B", 5);
    check(strcmp(record->serialText, "1A2B") == 0, "the serial text is at 344");
    memcpy(bytes + 600, &exposure, sizeof(exposure));
    check(record->exposure == 0.25, "the exposure is at 600");
    memcpy(bytes + 624, &width, sizeof(width));
    check(record->maxWidth == 1280, "the width is at 624");
    check(pointerAt(record, 640) != NULL, "the first extended entry is at 640");
    check(pointerAt(record, 672) != NULL, "the last extended entry is at 672");
}

int main(void) {
    int32_t last = 0;
    VideoChannelRecord record = {0};
    record.size = 632;
    record.context = &last;
    record.SetCameraParameters = setCameraParameters;
    record.GetImageInfo = getImageInfo;
    record.WaitFrame = waitFrame;
    record.CopyFrame = copyFrame;
    record.GetPropertyName = getPropertyName;
    record.CloseChannel = closeChannel;
    callsReachTheirEntries(&record);
    fieldsLieWhereHostsLook(&record);
    return failures == 0 ? 0 : 1;
}
