// SPDX-License-Identifier: MIT
// What the machine can do at best: the same traffic with no work in it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace bench {

// Reads four bytes and writes one, `size` times; the bytes mean nothing.
void trafficFloor(std::uint8_t* destination, const std::uint8_t* source, std::size_t size);
void trafficFloorAvx2(std::uint8_t* destination, const std::uint8_t* source, std::size_t size);

// The processor's string move, on every system.
void stringMove(std::uint8_t* destination, const std::uint8_t* source, std::size_t size);

}  // namespace bench
