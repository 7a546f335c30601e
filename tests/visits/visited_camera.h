// SPDX-License-Identifier: MIT
// The cameras of the built-in rigs, each as a rig of its own for a host to visit.
#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

namespace visits {

struct VisitedCamera {
    const char* rig;
    std::uint32_t position;   // in its rig
    const char* name;         // for the names of tests
    const char* throws = "";  // at each opening
};
void PrintTo(const VisitedCamera& camera, std::ostream* out);

// Every camera of every built-in rig that has one.
const std::vector<VisitedCamera>& visitedCameras();

// By which the virtual cameras know it.
std::string idOf(const VisitedCamera& camera);

// The camera's own description behind a plain neighbour, which a search for it opens
// first. Its pictures are a fortieth as wide and as high, odd where they are odd, so that
// a visit is made of calls and not of pixels.
std::string rigOf(const VisitedCamera& camera);
inline constexpr const char* neighbourId = "E1";

}  // namespace visits
