// SPDX-License-Identifier: MIT
// Encodes and writes pictures on threads of its own, so that a grab can go on
// waiting for frames. Portable.
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include "camhost/base/failure.h"
#include "camhost/pictures/picture_file.h"

namespace camhost {

struct Picture {
    std::string name;
    PictureFormat format = PictureFormat::Png;
    FrameLayout layout;
    std::vector<std::uint8_t> frame;
    std::optional<BayerOrder> demosaic;
    PngTexts texts;
};

// Used by one thread besides its own. Ending it without finish() leaves out what
// is still waiting.
class CPictureWriter {
public:
    // Takes the bytes of a picture, on a thread of the writer's own. Throws a Failure.
    using Store = std::function<void(const Picture&, std::span<const std::uint8_t> bytes)>;
    static void storeAsFile(const Picture& picture, std::span<const std::uint8_t> bytes);

    // At most so many pictures wait at a time. One thread keeps their order.
    CPictureWriter(std::size_t capacity, unsigned threads, Store store = storeAsFile);
    CPictureWriter(const CPictureWriter&) = delete;
    CPictureWriter& operator=(const CPictureWriter&) = delete;
    ~CPictureWriter();

    // Waits for a free place. Throws the first Failure of the threads.
    void add(Picture picture);
    std::size_t waiting();
    // Returns when all is written; throws as add does.
    void finish();
    // The names of those that were written whole.
    std::set<std::string> written();

private:
    void work();
    std::optional<Picture> next();
    void noteFailure(Failure failure);
    void throwFailure();

    const std::size_t m_capacity;
    const Store m_store;
    std::mutex m_mutex;
    std::condition_variable m_added;
    std::condition_variable m_taken;
    std::deque<Picture> m_waiting;  // under m_mutex, as what follows
    std::set<std::string> m_written;
    std::optional<Failure> m_failure;  // the first
    bool m_closed = false;
    std::vector<std::thread> m_threads;  // the user's thread only
};

}  // namespace camhost
