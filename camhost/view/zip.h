// SPDX-License-Identifier: MIT
// A zip file of files that are stored as they are, since pictures are packed already.
// Portable.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace camhost {

struct ZipEntry {
    std::string name;
    std::uint32_t checksum = 0;  // crc32() of the bytes
    std::shared_ptr<const std::vector<std::uint8_t>> bytes;
};

// What stands before an entry's bytes, and what stands behind the last entry. All together
// must be less than 4 GiB, in less than 65536 entries.
std::string zipEntryHead(const ZipEntry& entry);
std::string zipDirectory(const std::vector<ZipEntry>& entries);

}  // namespace camhost
