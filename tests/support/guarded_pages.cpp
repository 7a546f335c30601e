// SPDX-License-Identifier: MIT
#include "tests/support/guarded_pages.h"

#include <new>

#if defined(_WIN32)
#include "platform/windows.h"
#else
#include <sys/mman.h>
#endif

namespace {

// No machine of ours has larger ones.
constexpr std::size_t page = 4096;

#if defined(_WIN32)
// One accessible stretch, with a reserved page on either side.
std::uint8_t* takePages(std::size_t length) {
    void* pages = ::VirtualAlloc(nullptr, length, MEM_RESERVE, PAGE_NOACCESS);
    if (pages == nullptr) {
        throw std::bad_alloc();
    }
    auto* start = static_cast<std::uint8_t*>(pages);
    if (::VirtualAlloc(start + page, length - 2 * page, MEM_COMMIT, PAGE_READWRITE) == nullptr) {
        ::VirtualFree(pages, 0, MEM_RELEASE);
        throw std::bad_alloc();
    }
    return start;
}

void givePagesBack(std::uint8_t* pages, std::size_t /*length*/) {
    ::VirtualFree(pages, 0, MEM_RELEASE);
}
#else
std::uint8_t* takePages(std::size_t length) {
    void* pages = ::mmap(nullptr, length, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) {
        throw std::bad_alloc();
    }
    auto* start = static_cast<std::uint8_t*>(pages);
    if (::mprotect(start + page, length - 2 * page, PROT_READ | PROT_WRITE) != 0) {
        ::munmap(pages, length);
        throw std::bad_alloc();
    }
    return start;
}

void givePagesBack(std::uint8_t* pages, std::size_t length) {
    ::munmap(pages, length);
}
#endif

}  // namespace

CGuardedPages::CGuardedPages(std::size_t size) {
    const std::size_t rounded = (size + page - 1) / page * page;
    m_bytes = {takePages(rounded + 2 * page) + page, rounded};
}

CGuardedPages::~CGuardedPages() {
    givePagesBack(m_bytes.data() - page, m_bytes.size() + 2 * page);
}
