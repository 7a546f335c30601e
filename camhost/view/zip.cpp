// SPDX-License-Identifier: MIT
#include "camhost/view/zip.h"

namespace camhost {

namespace {

class CLittleEndian {
public:
    CLittleEndian& two(std::size_t value) { return bytes(value, 2); }
    CLittleEndian& four(std::size_t value) { return bytes(value, 4); }
    CLittleEndian& text(const std::string& text) {
        m_text += text;
        return *this;
    }
    const std::string& result() const { return m_text; }

private:
    CLittleEndian& bytes(std::size_t value, int count) {
        for (int i = 0; i < count; ++i) {
            m_text += static_cast<char>(value & 0xFFU);
            value >>= 8U;
        }
        return *this;
    }

    std::string m_text;
};

constexpr std::size_t version = 20;
constexpr std::size_t firstDay = 0x21;  // 1 January 1980: there is no time of day

// What an entry's head and its line of the directory share.
void addFacts(CLittleEndian& to, const ZipEntry& entry) {
    to.two(version).two(0).two(0).two(0).two(firstDay).four(entry.checksum);
    to.four(entry.bytes->size()).four(entry.bytes->size());
    to.two(entry.name.size()).two(0);
}

}  // namespace

std::string zipEntryHead(const ZipEntry& entry) {
    CLittleEndian head;
    head.four(0x04034B50);
    addFacts(head, entry);
    return head.text(entry.name).result();
}

std::string zipDirectory(const std::vector<ZipEntry>& entries) {
    CLittleEndian directory;
    std::size_t offset = 0;
    for (const ZipEntry& entry : entries) {
        directory.four(0x02014B50).two(version);
        addFacts(directory, entry);
        directory.two(0).two(0).two(0).four(0).four(offset).text(entry.name);
        offset += zipEntryHead(entry).size() + entry.bytes->size();
    }
    const std::size_t size = directory.result().size();
    directory.four(0x06054B50).two(0).two(0).two(entries.size()).two(entries.size());
    return directory.four(size).four(offset).two(0).result();
}

}  // namespace camhost
