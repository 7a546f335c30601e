/* SPDX-License-Identifier: MIT
 * A host in C: every entry point of every camera, through the adapter's file (the
 * first argument) and the two headers for hosts. Returns 0 when all went well.
 */
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <windows.h>

#include "velmora/host_blocks.h"
#include "velmora/video_channel_record.h"

enum { GUARD_BYTES = 32, GUARD = 0x5A };

static int failures = 0;
static int camera = 0;

static int check(int holds, const char* claim) {
    if (!holds) {
        fprintf(stderr, "camera %d: failed: %s\n", camera, claim);
        ++failures;
    }
    return holds;
}

/* Exactly the promised size, between guards. */
typedef struct Buffer {
    size_t size;
    unsigned char* memory;
} Buffer;

static Buffer makeBuffer(size_t size) {
    Buffer buffer;
    buffer.size = size;
    buffer.memory = malloc(size + 2 * GUARD_BYTES);
    if (buffer.memory == NULL) {
        exit(2);
    }
    memset(buffer.memory, GUARD, size + 2 * GUARD_BYTES);
    return buffer;
}

static char* text(const Buffer* buffer) {
    return (char*)buffer->memory + GUARD_BYTES;
}

static void releaseBuffer(Buffer* buffer) {
    for (size_t i = 0; i < GUARD_BYTES; ++i) {
        if (buffer->memory[i] != GUARD || buffer->memory[GUARD_BYTES + buffer->size + i] != GUARD) {
            check(0, "a buffer's guards are whole");
            break;
        }
    }
    free(buffer->memory);
    buffer->memory = NULL;
}

/* The buffers for one camera. */
typedef struct Host {
    VideoChannelRecord record;
    Buffer error;
    Buffer value;
} Host;

static void describe(Host* host) {
    const VideoChannelRecord* record = &host->record;
    char* error = text(&host->error);
    char* value = text(&host->value);
    uint32_t type = 0;
    int32_t count = 0;

    while (record->GetPropertyName(error, record->context, count, value) == 0) {
        char key[HOST_TEXT_BYTES];
        strcpy(key, value);
        check(record->GetPropertyType(error, record->context, key, &type) == 0, "a type");
        check(type == HOST_PROPERTY_CHOICE || type == HOST_PROPERTY_TEXT ||
                  type == HOST_PROPERTY_EXECUTABLE,
              "a known type");
        check(record->GetPropertyValue(error, record->context, key, value) == 0, key);
        if (type == HOST_PROPERTY_CHOICE) {
            check(record->GetPropertyChoice(error, record->context, key, 0, value) == 0, key);
        }
        ++count;
    }
    check(strcmp(value, "") == 0, "the list of names ends with an empty name");
    check(record->GetPropertyAttribute(error, record->context, "", 1, value) == 0, "attribute");
    check(strcmp(value, "No comment.") == 0, "the attribute's text");
    check(record->GetPropertyValue(error, record->context, "no such key", value) == 1, "no key");
    check(strcmp(error, "Unknown property \"no such key\"") == 0, "the text for no key");
}

static void command(Host* host) {
    const VideoChannelRecord* record = &host->record;
    char* error = text(&host->error);
    char* value = text(&host->value);

    check(record->ExecuteCommand(error, record->context, "no such command") == 1, "no command");
    check(strcmp(error, "Unknown command \"no such command\"") == 0, "the text for no command");
    if (record->GetPropertyValue(error, record->context, "execute_1", value) == 0) {
        /* An action may be refused while its automatic is on; then it says so. */
        strcpy(error, "");
        check(record->ExecuteCommand(error, record->context, value) == 0 ||
                  strstr(error, "automatic is enabled") != NULL,
              "the first command");
    }
}

static void parameters(Host* host) {
    const VideoChannelRecord* record = &host->record;
    CameraParameterBlock block;
    memset(&block, 0, sizeof(block));
    block.exposure = record->exposure;
    block.contrast = record->contrast;
    block.brightness = record->brightness;
    block.roiWidth = record->maxWidth;
    block.roiHeight = record->maxHeight;
    check(record->SetCameraParameters(text(&host->error), record->context, &block) == 0,
          "the parameter block");
}

/* Some waits may time out before the first frame. */
static int waitForFrame(Host* host) {
    const VideoChannelRecord* record = &host->record;
    for (int i = 0; i < 10; ++i) {
        uint32_t status = HOST_STATUS_NO_FRAME;
        if (!check(record->WaitFrame(text(&host->error), record->context, &status) == 0, "wait")) {
            return 0;
        }
        if (status == HOST_STATUS_DONE) {
            return 1;
        }
    }
    return check(0, "a frame within ten waits");
}

static void grab(Host* host, const char* pixelFormat, size_t bytesPerPixel) {
    const VideoChannelRecord* record = &host->record;
    char* error = text(&host->error);
    uint32_t status = HOST_STATUS_NO_FRAME;
    ImageInfo image;
    memset(&image, 0, sizeof(image));

    check(record->SetPropertyValue(error, record->context, "pixelformat", pixelFormat) == 0,
          pixelFormat);
    check(record->GetImageInfo(error, record->context, &image, &status) == 0, "image info");
    check(status == HOST_STATUS_DONE, "the image info's status");
    check(image.width > 0 && image.height > 0, "the image has a size");

    /* Raw8 at an odd width has one byte more per row. */
    const size_t width = (size_t)image.width + (bytesPerPixel == 1 ? (size_t)image.width % 2 : 0);
    Buffer frame = makeBuffer(width * (size_t)image.height * bytesPerPixel);
    check(record->StartAcquisition(error, record->context) == 0, "start");
    if (waitForFrame(host)) {
        check(record->CopyFrame(error, record->context, text(&frame), &status) == 0, "copy");
        check(status == HOST_STATUS_DONE, "the copy's status");
    }
    check(record->StopAcquisition(error, record->context) == 0, "stop");
    releaseBuffer(&frame);
}

static void drive(Host* host) {
    check(host->record.size == 632, "the record's size");
    describe(host);
    command(host);
    parameters(host);
    grab(host, "mono8", 1);
    grab(host, "raw8", 1);
    grab(host, "rgb24", 3);
}

int main(int argc, char** argv) {
    if (argc != 2) {
        fprintf(stderr, "usage: c_host ADAPTER\n");
        return 2;
    }
    const HMODULE adapter = LoadLibraryA(argv[1]);
    if (adapter == NULL) {
        fprintf(stderr, "%s can not be loaded\n", argv[1]);
        return 2;
    }
    const GetVideoChannelEntry getVideoChannel =
        (GetVideoChannelEntry)(void (*)(void))GetProcAddress(adapter, "GetVideoChannel");
    if (getVideoChannel == NULL) {
        fprintf(stderr, "%s has no export\n", argv[1]);
        return 2;
    }

    Host host;
    memset(&host, 0, sizeof(host));
    host.error = makeBuffer(HOST_TEXT_BYTES);
    host.value = makeBuffer(HOST_TEXT_BYTES);
    while (getVideoChannel(NULL, camera, &host.record) == 0) {
        printf("%d: %s (%s)\n", camera, host.record.deviceName, host.record.serialText);
        drive(&host);
        ++camera;
    }
    check(camera >= 5, "the rig has at least five cameras");
    while (getVideoChannel(NULL, 0, &host.record) == 0) {
        check(host.record.CloseChannel(text(&host.error), host.record.context) == 0, "close");
    }
    releaseBuffer(&host.error);
    releaseBuffer(&host.value);
    return failures == 0 ? 0 : 1;
}
