// SPDX-License-Identifier: MIT
// A number of frames as PNG files in memory, for one zip file. Portable.
#pragma once

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "camhost/view/frame_picture.h"
#include "camhost/view/http.h"
#include "camhost/view/zip.h"

namespace camhost {

// The owner's thread; pictures are encoded on threads of its own.
class CRecording {
public:
    static constexpr std::uint64_t mostFrames = 10000;
    static constexpr std::size_t mostBytes = std::size_t{512} << 20U;

    struct Progress {
        std::uint64_t asked = 0;
        std::uint64_t done = 0;
        bool isReady = false;
        std::string problem{};  // why there are fewer than asked for
    };

    // `wake` is called by any thread when a picture is done. `limit` is that of the bytes
    // held.
    CRecording(std::uint64_t frames, const PictureChoice& choice, std::function<void()> wake,
               std::size_t limit = mostBytes);

    void add(const ViewFrame& frame);
    Progress progress() const;
    // Of a recording that is ready.
    HttpResponse zip() const;
    // Returns when what was added is encoded.
    void waitForPictures();

private:
    void store(const Picture& picture, std::span<const std::uint8_t> bytes);
    bool isFull(std::size_t more) const;

    const std::uint64_t m_asked;
    const PictureChoice m_choice;
    const std::function<void()> m_wake;
    const std::size_t m_limit;
    std::uint64_t m_taken = 0;
    std::string m_problem;
    mutable std::mutex m_mutex;
    std::map<std::string, ZipEntry> m_files;  // under m_mutex, as what follows
    std::size_t m_bytes = 0;                  // of frames that wait, and of pictures
    CPictureWriter m_writer;                  // last: its threads use the others
};

}  // namespace camhost
