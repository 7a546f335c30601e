// SPDX-License-Identifier: MIT
// Memory between two pages that nobody may touch: a read or a write outside ends the
// test's process, where a sanitizer is not at hand too.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

class CGuardedPages {
public:
    // Room for `size` bytes and no fewer.
    explicit CGuardedPages(std::size_t size);
    CGuardedPages(const CGuardedPages&) = delete;
    CGuardedPages& operator=(const CGuardedPages&) = delete;
    ~CGuardedPages();

    // The first bytes, right behind the page before.
    std::span<std::uint8_t> first(std::size_t size) const noexcept { return m_bytes.first(size); }
    // The last bytes, right before the page behind.
    std::span<std::uint8_t> last(std::size_t size) const noexcept { return m_bytes.last(size); }

private:
    std::span<std::uint8_t> m_bytes;
};
