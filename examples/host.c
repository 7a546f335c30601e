/* SPDX-License-Identifier: MIT
 * A whole host in C: host ADAPTER.dll [SERIAL] [PICTURE.pgm]
 * Lists the cameras, takes one grey picture, and returns 0 when it has it.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <windows.h>

#include "velmora/video_channel_record.h"

enum { MOST_CAMERAS = 16, MOST_WAITS = 30, SEARCH_PAUSE = 200 };

/* What the last call reported: texts are only written when there is something to say. */
static char message[HOST_TEXT_BYTES];

static int32_t told(const char* call, int32_t result) {
    if (result != HOST_RESULT_SUCCESS) {
        fprintf(stderr, "%s: %s\n", call, message[0] != '\0' ? message : "refused");
    }
    message[0] = '\0';
    return result;
}

static GetVideoChannelEntry loadAdapter(const char* file) {
    const HMODULE adapter = LoadLibraryA(file);
    if (adapter == NULL) {
        fprintf(stderr, "%s can not be loaded\n", file);
        return NULL;
    }
    return (GetVideoChannelEntry)(void (*)(void))GetProcAddress(adapter, "GetVideoChannel");
}

/* All records at once: indices move when a channel is closed, contexts do not. */
static int openCameras(GetVideoChannelEntry getVideoChannel, VideoChannelRecord* cameras) {
    int count = 0;
    while (count < MOST_CAMERAS && getVideoChannel(NULL, count, &cameras[count]) == 0) {
        printf("%d  %s  %s\n", count, cameras[count].serialText, cameras[count].deviceName);
        ++count;
    }
    return count;
}

static const VideoChannelRecord* cameraOf(const VideoChannelRecord* cameras, int count,
                                          const char* serial) {
    for (int i = 0; i < count; ++i) {
        if (serial == NULL || strcmp(cameras[i].serialText, serial) == 0) {
            return &cameras[i];
        }
    }
    return NULL;
}

/* 0 once a frame is ready. Every wait lasts up to one second, and searches for a lost camera. */
static int32_t waitForFrame(const VideoChannelRecord* camera) {
    for (int i = 0; i < MOST_WAITS; ++i) {
        uint32_t status = HOST_STATUS_NO_FRAME;
        if (camera->WaitFrame(message, camera->context, &status) == HOST_RESULT_SUCCESS &&
            status == HOST_STATUS_DONE) {
            return HOST_RESULT_SUCCESS;
        }
        if (status == HOST_STATUS_NO_DEVICE) {
            Sleep(SEARCH_PAUSE);
        }
    }
    return HOST_RESULT_FAILURE;
}

static int32_t savePicture(const char* file, const ImageInfo* image, const uint8_t* pixels) {
    const size_t bytes = (size_t)image->width * (size_t)image->height;
    FILE* picture = fopen(file, "wb");
    if (picture == NULL) {
        return HOST_RESULT_FAILURE;
    }
    fprintf(picture, "P5\n%d %d\n255\n", (int)image->width, (int)image->height);
    const size_t written = fwrite(pixels, 1, bytes, picture);
    return fclose(picture) == 0 && written == bytes ? HOST_RESULT_SUCCESS : HOST_RESULT_FAILURE;
}

/* While live: the size that counts is the one since the start. */
static int32_t takePicture(const VideoChannelRecord* camera, const char* file) {
    ImageInfo image = {0};
    uint32_t status = HOST_STATUS_NO_FRAME;
    if (told("GetImageInfo", camera->GetImageInfo(message, camera->context, &image, &status)) !=
        0) {
        return HOST_RESULT_FAILURE;
    }
    uint8_t* pixels = malloc((size_t)image.width * (size_t)image.height);
    int32_t result = pixels != NULL ? told("WaitFrame", waitForFrame(camera)) : HOST_RESULT_FAILURE;
    if (result == HOST_RESULT_SUCCESS) {
        camera->CopyFrame(message, camera->context, pixels, &status);
        result = status == HOST_STATUS_DONE ? savePicture(file, &image, pixels)
                                            : told("CopyFrame", HOST_RESULT_FAILURE);
    }
    free(pixels);
    return result;
}

static int32_t grab(const VideoChannelRecord* camera, const char* file) {
    void* context = camera->context;
    if (told("pixelformat", camera->SetPropertyValue(message, context, "pixelformat", "mono8")) ||
        told("StartAcquisition", camera->StartAcquisition(message, context))) {
        return HOST_RESULT_FAILURE;
    }
    const int32_t result = takePicture(camera, file);
    camera->StopAcquisition(message, context);
    return result;
}

int main(int argc, char** argv) {
    static VideoChannelRecord cameras[MOST_CAMERAS];
    const GetVideoChannelEntry getVideoChannel = argc > 1 ? loadAdapter(argv[1]) : NULL;
    if (getVideoChannel == NULL) {
        fprintf(stderr, "usage: host ADAPTER.dll [SERIAL] [PICTURE.pgm]\n");
        return 2;
    }
    const int count = openCameras(getVideoChannel, cameras);
    const VideoChannelRecord* camera = cameraOf(cameras, count, argc > 2 ? argv[2] : NULL);
    const int32_t result =
        camera != NULL ? grab(camera, argc > 3 ? argv[3] : "picture.pgm") : HOST_RESULT_FAILURE;
    for (int i = 0; i < count; ++i) {
        cameras[i].CloseChannel(message, cameras[i].context);
    }
    return result == HOST_RESULT_SUCCESS ? 0 : 1;
}
