/* SPDX-License-Identifier: MIT
 * The blocks, codes and status words that cross the border to the host besides
 * the channel record. Plain C11; a host may include it as it is.
 */
#ifndef VELMORA_HOST_BLOCKS_H
#define VELMORA_HOST_BLOCKS_H

/* NOLINTBEGIN(modernize-*): this is C. */

#include <stddef.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#else
#include <assert.h>
#endif

/* Results of every entry point. */
enum { HOST_RESULT_SUCCESS = 0, HOST_RESULT_FAILURE = 1 };

/* Every text buffer of the host holds at least this many bytes. */
enum { HOST_TEXT_BYTES = 256 };

/* Status words. */
enum {
    HOST_STATUS_DONE = 0,          /* frame ready, frame copied, device valid */
    HOST_STATUS_NO_FRAME = 0x1000, /* time-out, or nothing to copy */
    HOST_STATUS_NO_DEVICE = 0x2000 /* no valid device, or disconnected */
};

/* Pixel types, as ImageInfo reports them. */
enum { HOST_PIXEL_MONO8 = 0, HOST_PIXEL_RAW8 = 4, HOST_PIXEL_RGB24 = 7 };

/* Kinds of a property, as GetPropertyType reports them. */
enum {
    HOST_PROPERTY_CHOICE = 1,    /* one of several texts */
    HOST_PROPERTY_TEXT = 2,      /* a value edited as text */
    HOST_PROPERTY_EXECUTABLE = 4 /* an action */
};

/* What SetCameraParameters applies in one call. Read only to the adapter. */
typedef struct CameraParameterBlock {
    uint8_t unread0[8];
    double exposure;   /* in the camera's own unit, as in "exposure value abs" */
    double contrast;   /* fraction of the range, 0.0 minimum to 1.0 maximum */
    double brightness; /* fraction of the range */
    uint8_t unread32[4];
    int32_t triggerEnable;   /* 1 on, 0 off */
    int32_t triggerPolarity; /* 1 true, anything else false */
    int32_t roiLeft;         /* region of interest, pixels */
    int32_t roiTop;
    int32_t roiWidth;
    int32_t roiHeight;
    uint8_t unread60[4];
} CameraParameterBlock;

/* What GetImageInfo fills. Sizes and edges in pixels. */
typedef struct ImageInfo {
    uint32_t hostOwn; /* never written by the adapter */
    int32_t width;
    int32_t height;
    int32_t lineWidth;
    uint32_t pixelType; /* HOST_PIXEL_... */
    int32_t regionLeft;
    int32_t regionTop;
    int32_t regionWidth;
    int32_t regionHeight;
    int32_t reserved0;
    int32_t reserved1;
} ImageInfo;

static_assert(offsetof(CameraParameterBlock, exposure) == 8, "host layout");
static_assert(offsetof(CameraParameterBlock, contrast) == 16, "host layout");
static_assert(offsetof(CameraParameterBlock, brightness) == 24, "host layout");
static_assert(offsetof(CameraParameterBlock, unread32) == 32, "host layout");
static_assert(offsetof(CameraParameterBlock, triggerEnable) == 36, "host layout");
static_assert(offsetof(CameraParameterBlock, triggerPolarity) == 40, "host layout");
static_assert(offsetof(CameraParameterBlock, roiLeft) == 44, "host layout");
static_assert(offsetof(CameraParameterBlock, roiTop) == 48, "host layout");
static_assert(offsetof(CameraParameterBlock, roiWidth) == 52, "host layout");
static_assert(offsetof(CameraParameterBlock, roiHeight) == 56, "host layout");

static_assert(offsetof(ImageInfo, hostOwn) == 0, "host layout");
static_assert(offsetof(ImageInfo, width) == 4, "host layout");
static_assert(offsetof(ImageInfo, height) == 8, "host layout");
static_assert(offsetof(ImageInfo, lineWidth) == 12, "host layout");
static_assert(offsetof(ImageInfo, pixelType) == 16, "host layout");
static_assert(offsetof(ImageInfo, regionLeft) == 20, "host layout");
static_assert(offsetof(ImageInfo, regionTop) == 24, "host layout");
static_assert(offsetof(ImageInfo, regionWidth) == 28, "host layout");
static_assert(offsetof(ImageInfo, regionHeight) == 32, "host layout");
static_assert(offsetof(ImageInfo, reserved0) == 36, "host layout");
static_assert(offsetof(ImageInfo, reserved1) == 40, "host layout");
static_assert(sizeof(ImageInfo) == 44, "host layout");

#ifdef __cplusplus
}
#endif

/* NOLINTEND(modernize-*) */

#endif
