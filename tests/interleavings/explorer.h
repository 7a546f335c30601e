// SPDX-License-Identifier: MIT
// Runs the steps of both threads, and the loss of the camera, in every order that there is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "tests/interleavings/model.h"

namespace interleavings {

struct Exploration {
    std::size_t states = 0;
    std::size_t transitions = 0;
    // Empty where nothing is wrong. Else the first thing found, on a shortest way there.
    std::string violation;
    std::vector<std::string> trace;
    std::uint32_t witnesses = 0;
    // Texts of steps that were never taken.
    std::vector<std::string> unused;
};

// Every state that a host with any operations in any order and a camera with any number
// of deliveries can reach; up to the first violation.
Exploration explore(Variant variant);

}  // namespace interleavings
