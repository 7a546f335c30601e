// SPDX-License-Identifier: MIT
// What every call of a host gives with a context that names no channel.
#pragma once

#include <gtest/gtest.h>

#include "tests/support/host_calls.h"

// Every call but CloseChannel is refused, and nothing of the host's memory is written.
inline void expectAllRefused(const CRecordHost& host) {
    CHostMemory frame(32);
    CHostMemory memory(sizeof(ImageInfo));
    auto* image = static_cast<ImageInfo*>(static_cast<void*>(memory.data()));
    EXPECT_EQ(host.parameters(CameraParameterBlock{}), refused());
    EXPECT_EQ(host.imageInfo(image), refused());
    EXPECT_EQ(host.wait(), refused());
    EXPECT_EQ(host.copy(frame), refused());
    EXPECT_EQ(host.start(), refused());
    EXPECT_EQ(host.stop(), refused());
    EXPECT_EQ(host.execute("propertydialog"), refused());
    EXPECT_EQ(host.get("videoformat"), refused());
    EXPECT_EQ(host.set("videoformat", "Y800 (8x4)"), refused());
    EXPECT_EQ(host.get("pixelformat"), refused());
    EXPECT_EQ(host.set("pixelformat", "raw8"), refused());
    EXPECT_EQ(host.name(0), refused());
    EXPECT_EQ(host.type("videoformat"), refused());
    EXPECT_EQ(host.choice("videoformat", 0), refused());
    EXPECT_EQ(host.attribute("videoformat", 1), refused());
    EXPECT_TRUE(frame.isUntouched());
    EXPECT_TRUE(memory.isUntouched());
}
