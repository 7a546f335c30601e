// SPDX-License-Identifier: MIT
#include "camhost/view/recording.h"

#include <algorithm>
#include <thread>
#include <utility>

#include "camhost/base/checksum.h"

namespace camhost {

namespace {

unsigned writers() {
    constexpr unsigned mostWriters = 4;
    return std::clamp(std::thread::hardware_concurrency(), 1U, mostWriters);
}

}  // namespace

CRecording::CRecording(std::uint64_t frames, const PictureChoice& choice,
                       std::function<void()> wake, std::size_t limit)
    : m_asked(frames),
      m_choice(choice),
      m_wake(std::move(wake)),
      m_limit(limit),
      // There is a place for every frame: the owner never waits for one.
      m_writer(frames, writers(),
               [this](const Picture& picture, std::span<const std::uint8_t> bytes) {
                   store(picture, bytes);
               }) {}

bool CRecording::isFull(std::size_t more) const {
    const std::lock_guard lock(m_mutex);
    return m_bytes + more > m_limit;
}

void CRecording::add(const ViewFrame& frame) {
    if (m_taken == m_asked || !m_problem.empty()) {
        return;
    }
    const std::size_t bytes = frame.buffer.frame().size();
    if (isFull(bytes)) {
        m_problem = std::to_string(m_limit >> 20U) + " MiB are full after " +
                    std::to_string(m_taken) + " frames";
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        m_bytes += bytes;
    }
    try {
        m_writer.add(pictureOf(frame, m_choice));
        ++m_taken;
    } catch (const Failure& failure) {
        m_problem = failure.message;
    }
}

void CRecording::store(const Picture& picture, std::span<const std::uint8_t> bytes) {
    ZipEntry entry{picture.name, crc32(bytes),
                   std::make_shared<const std::vector<std::uint8_t>>(bytes.begin(), bytes.end())};
    {
        const std::lock_guard lock(m_mutex);
        m_bytes += bytes.size();
        m_bytes -= picture.frame.size();
        m_files.emplace(picture.name, std::move(entry));
    }
    m_wake();
}

CRecording::Progress CRecording::progress() const {
    const std::lock_guard lock(m_mutex);
    const bool isClosed = m_taken == m_asked || !m_problem.empty();
    return {m_asked, m_files.size(), isClosed && m_files.size() == m_taken, m_problem};
}

HttpResponse CRecording::zip() const {
    std::vector<ZipEntry> entries;
    {
        const std::lock_guard lock(m_mutex);
        for (const auto& [name, entry] : m_files) {
            entries.push_back(entry);
        }
    }
    HttpResponse response{.type = "application/zip"};
    const auto addText = [&response](std::string text) {
        HttpResponse part;
        part.setText(std::move(text));
        response.body.push_back(std::move(part.body.front()));
    };
    for (const ZipEntry& entry : entries) {
        addText(zipEntryHead(entry));
        response.body.push_back({entry.bytes, *entry.bytes});
    }
    addText(zipDirectory(entries));
    response.headers.emplace_back("Content-Disposition", "attachment; filename=\"recording.zip\"");
    return response;
}

void CRecording::waitForPictures() {
    m_writer.finish();
}

}  // namespace camhost
