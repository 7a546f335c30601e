// SPDX-License-Identifier: MIT
// The capture library as the product sees it. Whoever builds with a maker's own
// headers includes them here, in place of ours.
#pragma once

#include "capture/library/frame_sink.h"
#include "capture/library/grabber.h"
#include "capture/library/grabber_listener.h"
#include "capture/library/handles.h"
#include "capture/library/items.h"
#include "capture/library/library.h"
#include "capture/library/mem_buffer.h"
#include "capture/library/property_ids.h"
#include "capture/library/property_items.h"
#include "capture/library/strings.h"
