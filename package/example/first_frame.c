/* SPDX-License-Identifier: MIT
 * The smallest host: lists the cameras and takes one frame of the first. Build it in
 * this folder, with mingw-w64 (on Windows the compiler is called gcc):
 *
 *     x86_64-w64-mingw32-gcc -std=c11 -I ../include -c first_frame.c
 *     x86_64-w64-mingw32-gcc -o first_frame.exe first_frame.o ../lib/velmora_adapter.lib
 *
 * or with Visual Studio, at its x64 prompt:
 *
 *     cl /nologo /std:c11 /I ..\include /c first_frame.c
 *     link /nologo first_frame.obj ..\lib\velmora_adapter.lib
 *
 * velmora_adapter.dll has to lie beside first_frame.exe, and beside that the capture
 * library of the same ABI.
 */
#include <stdio.h>
#include <stdlib.h>

#include "velmora/video_channel_record.h"

enum { MOST_WAITS = 5, RGB24_BYTES = 3 };

/* The record's calls write no longer text than this. */
static char message[HOST_TEXT_BYTES];

static int refused(const char* call) {
    fprintf(stderr, "%s: %s\n", call, message);
    return 1;
}

/* While live; a wait may time out before the camera's first frame. */
static int takeFrame(const VideoChannelRecord* camera, unsigned char* pixels) {
    uint32_t status = HOST_STATUS_NO_FRAME;
    for (int i = 0; i < MOST_WAITS && status == HOST_STATUS_NO_FRAME; ++i) {
        if (camera->WaitFrame(message, camera->context, &status) != HOST_RESULT_SUCCESS) {
            return refused("WaitFrame");
        }
    }
    camera->CopyFrame(message, camera->context, pixels, &status);
    return status == HOST_STATUS_DONE ? 0 : refused("CopyFrame");
}

static int showFirstFrame(const VideoChannelRecord* camera) {
    ImageInfo image = {0};
    uint32_t status = 0;
    if (camera->SetPropertyValue(message, camera->context, "pixelformat", "rgb24") !=
        HOST_RESULT_SUCCESS) {
        return refused("SetPropertyValue");
    }
    if (camera->GetImageInfo(message, camera->context, &image, &status) != HOST_RESULT_SUCCESS) {
        return refused("GetImageInfo");
    }
    const size_t bytes = (size_t)image.width * (size_t)image.height * RGB24_BYTES;
    unsigned char* pixels = malloc(bytes);
    if (pixels == NULL ||
        camera->StartAcquisition(message, camera->context) != HOST_RESULT_SUCCESS) {
        free(pixels);
        return refused("StartAcquisition");
    }
    const int result = takeFrame(camera, pixels);
    camera->StopAcquisition(message, camera->context);
    if (result == 0) {
        printf("a frame of %d x %d, %u bytes\n", (int)image.width, (int)image.height,
               (unsigned)bytes);
    }
    free(pixels);
    return result;
}

int main(void) {
    VideoChannelRecord camera = {0};
    for (int32_t i = 0; GetVideoChannel(NULL, i, &camera) == HOST_RESULT_SUCCESS; ++i) {
        printf("%d: %s\n", (int)i, camera.deviceName);
    }
    if (GetVideoChannel(NULL, 0, &camera) != HOST_RESULT_SUCCESS) {
        fprintf(stderr, "no camera\n");
        return 1;
    }
    const int result = showFirstFrame(&camera);
    while (GetVideoChannel(NULL, 0, &camera) == HOST_RESULT_SUCCESS) {
        camera.CloseChannel(message, camera.context);
    }
    return result;
}
