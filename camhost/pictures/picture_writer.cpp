// SPDX-License-Identifier: MIT
#include "camhost/pictures/picture_writer.h"

#include <exception>
#include <utility>

#include "camhost/base/files.h"

namespace camhost {

void CPictureWriter::storeAsFile(const Picture& picture, std::span<const std::uint8_t> bytes) {
    writeFile(picture.name, bytes);
}

CPictureWriter::CPictureWriter(std::size_t capacity, unsigned threads, Store store)
    : m_capacity(capacity), m_store(std::move(store)) {
    for (unsigned i = 0; i < threads; ++i) {
        m_threads.emplace_back([this] { work(); });
    }
}

CPictureWriter::~CPictureWriter() {
    {
        const std::lock_guard lock(m_mutex);
        m_waiting.clear();
        m_closed = true;
    }
    m_added.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
}

void CPictureWriter::throwFailure() {
    if (m_failure) {
        throw Failure(*m_failure);
    }
}

void CPictureWriter::add(Picture picture) {
    {
        std::unique_lock lock(m_mutex);
        m_taken.wait(lock, [this] { return m_failure || m_waiting.size() < m_capacity; });
        throwFailure();
        m_waiting.push_back(std::move(picture));
    }
    m_added.notify_one();
}

std::size_t CPictureWriter::waiting() {
    const std::lock_guard lock(m_mutex);
    return m_waiting.size();
}

void CPictureWriter::finish() {
    {
        const std::lock_guard lock(m_mutex);
        m_closed = true;
    }
    m_added.notify_all();
    for (std::thread& thread : m_threads) {
        thread.join();
    }
    m_threads.clear();
    throwFailure();
}

std::set<std::string> CPictureWriter::written() {
    const std::lock_guard lock(m_mutex);
    return m_written;
}

std::optional<Picture> CPictureWriter::next() {
    std::unique_lock lock(m_mutex);
    m_added.wait(lock, [this] { return m_closed || !m_waiting.empty(); });
    if (m_waiting.empty() || m_failure) {
        return std::nullopt;
    }
    std::optional<Picture> picture = std::move(m_waiting.front());
    m_waiting.pop_front();
    lock.unlock();
    m_taken.notify_one();
    return picture;
}

void CPictureWriter::noteFailure(Failure failure) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_failure) {
            m_failure = std::move(failure);
        }
    }
    m_taken.notify_all();
}

void CPictureWriter::work() {
    try {
        while (const std::optional<Picture> picture = next()) {
            m_store(*picture, encodePicture(picture->format, picture->layout, picture->frame,
                                            picture->demosaic, picture->texts));
            const std::lock_guard lock(m_mutex);
            m_written.insert(picture->name);
        }
    } catch (const Failure& failure) {
        noteFailure(failure);
    } catch (const std::exception& error) {
        noteFailure({.code = "internal", .message = error.what()});
    }
}

}  // namespace camhost
