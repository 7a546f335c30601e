/* SPDX-License-Identifier: MIT
 * The C interface through which tests and tools steer the virtual cameras:
 * which cameras there are, when frames come, what fails, and what was called.
 * Exported by the virtual capture library beside the library proper. Any thread.
 *
 * Cameras are named by their serial text (upper-case hexadecimal) or, where a
 * camera has no serial number, by their device name.
 */
#ifndef VIRTUAL_CAMERAS_CONTROL_H
#define VIRTUAL_CAMERAS_CONTROL_H

#include <stdint.h>

#if defined(VIRTUAL_CAMERAS_STATIC)
#define VIRTUAL_CAMERAS_API
#elif defined(VIRTUAL_CAMERAS_IMPLEMENTATION)
#define VIRTUAL_CAMERAS_API __declspec(dllexport)
#else
#define VIRTUAL_CAMERAS_API __declspec(dllimport)
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Back to the state after loading: the standard rig, real clock, no faults,
 * empty and disabled call log, counters at zero. Objects that a caller still
 * holds stay valid but belong to no camera any more. */
VIRTUAL_CAMERAS_API void virtualCamerasReset(void);

/* Replaces the rig. `name` is a built-in rig: "standard", "empty", "failing-open",
 * "throwing", "odd", "no-properties" or "bare"; with a scene for all its cameras
 * behind a colon ("standard:counter" identifies every pixel, scene_code.h).
 * `toml` is a rig description (docs/rig.md).
 * 0 on success; else 1, the rig unchanged, and a terminated message (with line and column). */
VIRTUAL_CAMERAS_API int32_t virtualCamerasChooseRig(const char* name, char* message,
                                                    uint32_t messageSize);
VIRTUAL_CAMERAS_API int32_t virtualCamerasLoadRig(const char* toml, char* message,
                                                  uint32_t messageSize);

/* Why VIRTUAL_CAMERAS_RIG could not be followed when the library was initialised, which left
 * no cameras. 1 and a terminated message, or 0 and an empty one when nothing was wrong. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasRigMistake(char* message, uint32_t messageSize);

/* When frames come while a camera is live and not waiting for a trigger. */
enum {
    VIRTUAL_CAMERAS_CLOCK_REAL = 0,   /* at the chosen frame rate */
    VIRTUAL_CAMERAS_CLOCK_FAST = 1,   /* the next as soon as the last was delivered */
    VIRTUAL_CAMERAS_CLOCK_STEPPED = 2 /* only through virtualCamerasStepClock */
};
VIRTUAL_CAMERAS_API void virtualCamerasSetClock(int32_t mode);

/* Stepped clock: advances the time of all cameras, and delivers the frames that
 * fall due, in order, each on its camera's own delivery thread. Returns when the
 * last listener has returned: the number of frames delivered. */
VIRTUAL_CAMERAS_API uint32_t virtualCamerasStepClock(uint64_t nanoseconds);

/* Delivers exactly one frame of one live camera now, whatever the clock, on its
 * delivery thread, and returns when the listener has returned. 1 when a frame
 * was delivered; 0 when the camera is not live or all buffers are locked. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasDeliverFrame(const char* camera);

/* Trigger mode: one pulse. 1 when it released a frame (as above). */
VIRTUAL_CAMERAS_API int32_t virtualCamerasFireTrigger(const char* camera);

/* Takes a camera away, or brings it back. 1 when there is such a camera. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasUnplug(const char* camera);
VIRTUAL_CAMERAS_API int32_t virtualCamerasPlug(const char* camera);

/* Makes a call fail. `operation` is a name as the call log shows it, such as
 * "Grabber::startLive" or "IVCDRangeProperty::getValue". `nth` counts from now:
 * 1 is the next call. With `count` 0 every later call fails too. */
enum {
    VIRTUAL_CAMERAS_FAIL_FALSE = 0, /* false, an empty handle, or E_FAIL, without effect */
    VIRTUAL_CAMERAS_FAIL_CODE = 1,  /* returns `code`, a negative result code, without effect */
    VIRTUAL_CAMERAS_FAIL_THROW = 2, /* throws `text` as a char*, without effect */
    VIRTUAL_CAMERAS_FAIL_EMPTY = 3, /* a list: present but empty; a reference or text: success
                                       with a null pointer */
    VIRTUAL_CAMERAS_FAIL_THROW_CODE = 4,    /* throws `code` as a 32-bit integer, without effect */
    VIRTUAL_CAMERAS_FAIL_THROW_STANDARD = 5 /* throws `text` as a std::runtime_error, without
                                               effect */
};
VIRTUAL_CAMERAS_API void virtualCamerasFailCall(const char* operation, uint32_t nth, uint32_t count,
                                                int32_t kind, int32_t code, const char* text);
VIRTUAL_CAMERAS_API void virtualCamerasClearFailures(void);

/* 1 while the calling thread is inside a call of the library, from work that a test has put
 * there (an allocation, say). */
VIRTUAL_CAMERAS_API int32_t virtualCamerasIsInsideCall(void);

/* The ordered log of every call into the library, and of every delivery out of
 * it ("GrabberListener::frameReady"). Off at first; switching it on empties it. */
typedef struct VirtualCamerasCall {
    uint64_t sequence;   /* counts up from 0 since the log was switched on */
    uint64_t threadId;   /* the system's id of the calling thread */
    char camera[64];     /* serial text or name; empty where no camera is meant */
    char operation[64];  /* "Class::member" */
    char arguments[192]; /* as text, comma separated */
    char result[64];     /* as text; "throw TEXT" for an injected text */
} VirtualCamerasCall;
VIRTUAL_CAMERAS_API void virtualCamerasRecordCalls(int32_t on);
VIRTUAL_CAMERAS_API uint64_t virtualCamerasCallCount(void);
/* 1 when there is such an entry. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasGetCall(uint64_t sequence, VirtualCamerasCall* call);
/* Waits until a call of `operation` with a sequence of at least `from` has been
 * recorded. 1 and its sequence, or 0 after the deadline. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasWaitForCall(const char* operation, uint64_t from,
                                                      uint32_t deadlineMilliseconds,
                                                      uint64_t* sequence);

/* How often a camera's ring buffer (0 to 4) is locked now; -1 without one. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasBufferLocks(const char* camera, uint32_t buffer);

/* Calls that broke the library's rules since the reset (wrong order, unknown or
 * stale argument, unbalanced unlock is not one), and the text of the last. */
VIRTUAL_CAMERAS_API uint32_t virtualCamerasMisuses(char* last, uint32_t lastSize);

/* What is alive now; for leak checks. */
typedef struct VirtualCamerasAlive {
    uint32_t grabbers;
    uint32_t openDevices;
    uint32_t liveDevices;
    uint32_t listeners;
    uint32_t sinks;
    uint32_t buffers;
    uint32_t items;      /* device, format, norm, channel and error values */
    uint32_t interfaces; /* references to property interfaces, all cameras */
} VirtualCamerasAlive;
VIRTUAL_CAMERAS_API void virtualCamerasGetAlive(VirtualCamerasAlive* alive);

/* The references held by callers to one property interface, such as
 * ("1A2B", "Exposure", "Value", "IVCDRangeProperty"). -1 when there is none. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasInterfaceReferences(const char* camera, const char* item,
                                                              const char* element,
                                                              const char* interfaceName);

/* The state of a property behind the library's back: numbers as decimal text,
 * switches as "true" or "false", map strings as their text. 1 on success. */
VIRTUAL_CAMERAS_API int32_t virtualCamerasReadProperty(const char* camera, const char* item,
                                                       const char* element,
                                                       const char* interfaceName, char* text,
                                                       uint32_t textSize);

/* Property pages shown since the reset, and buttons pushed. */
VIRTUAL_CAMERAS_API uint32_t virtualCamerasPagesShown(void);
/* What a host does while a page is open, which pumps its messages: called in each page
 * until the reset, on the thread that shows it. Null for nothing. */
VIRTUAL_CAMERAS_API void virtualCamerasInPage(void (*work)(void* context), void* context);
VIRTUAL_CAMERAS_API uint32_t virtualCamerasButtonPushes(const char* camera, const char* item);

#ifdef __cplusplus
}
#endif

#endif
