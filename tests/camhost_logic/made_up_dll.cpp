// SPDX-License-Identifier: MIT
#include "tests/camhost_logic/made_up_dll.h"

namespace camhost::test {

namespace {

constexpr std::size_t sectionAddress = 0x1000;

void put(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint64_t value,
         std::size_t size) {
    if (bytes.size() < offset + size) {
        bytes.resize(offset + size);
    }
    for (std::size_t i = 0; i < size; ++i) {
        bytes[offset + i] = static_cast<std::uint8_t>(value >> (8 * i));
    }
}

class CContent {
public:
    // Returns the address of that many zeros.
    std::uint64_t take(std::size_t size) {
        m_bytes.resize((m_bytes.size() + 7) / 8 * 8);
        const std::size_t offset = m_bytes.size();
        m_bytes.resize(offset + size);
        return sectionAddress + offset;
    }
    std::uint64_t text(const std::string& text) {
        const std::uint64_t address = take(text.size() + 1);
        for (std::size_t i = 0; i < text.size(); ++i) {
            write(address + i, static_cast<unsigned char>(text[i]), 1);
        }
        return address;
    }
    void write(std::uint64_t address, std::uint64_t value, std::size_t size) {
        put(m_bytes, address - sectionAddress, value, size);
    }
    // A table of names of functions, each behind a hint of two bytes.
    std::uint64_t thunks(const std::vector<std::string>& functions) {
        const std::uint64_t table = take(8 * (functions.size() + 1));
        for (std::size_t i = 0; i < functions.size(); ++i) {
            write(table + 8 * i, text("hh" + functions[i]), 8);
        }
        return table;
    }
    std::uint64_t exports(const std::vector<std::string>& names) {
        const std::uint64_t directory = take(40);
        const std::uint64_t table = take(4 * names.size());
        write(directory + 24, names.size(), 4);
        write(directory + 32, table, 4);
        for (std::size_t i = 0; i < names.size(); ++i) {
            write(table + 4 * i, text(names[i]), 4);
        }
        return directory;
    }
    std::uint64_t imports(const std::vector<DllImport>& imports) {
        const std::uint64_t directory = take(20 * (imports.size() + 1));
        for (std::size_t i = 0; i < imports.size(); ++i) {
            write(directory + 20 * i, thunks(imports[i].functions), 4);
            write(directory + 20 * i + 12, text(imports[i].library), 4);
        }
        return directory;
    }
    std::uint64_t delayed(const std::vector<DllImport>& imports) {
        const std::uint64_t directory = take(32 * (imports.size() + 1));
        for (std::size_t i = 0; i < imports.size(); ++i) {
            const std::uint64_t descriptor = directory + 32 * i;
            write(descriptor, 1, 4);
            write(descriptor + 4, text(imports[i].library), 4);
            write(descriptor + 8, take(8), 4);
            write(descriptor + 12, take(8 * (imports[i].functions.size() + 1)), 4);
            write(descriptor + 16, thunks(imports[i].functions), 4);
        }
        return directory;
    }
    const std::vector<std::uint8_t>& bytes() const { return m_bytes; }

private:
    std::vector<std::uint8_t> m_bytes;
};

}  // namespace

void put32(std::vector<std::uint8_t>& bytes, std::size_t offset, std::uint64_t value) {
    put(bytes, offset, value, 4);
}

std::vector<std::uint8_t> dllBytes(const DllFile& dll, DelayedBy delayedBy) {
    CContent content;
    const std::uint64_t exports = content.exports(dll.exports);
    const std::uint64_t imports = content.imports(dll.imports);
    const std::uint64_t delayed = content.delayed(dll.delayedImports);

    std::vector<std::uint8_t> bytes(contentAt);
    put(bytes, 0, 0x5A4D, 2);
    put32(bytes, 0x3C, 0x80);
    put32(bytes, 0x80, 0x4550);
    put(bytes, machineAt, dll.machine, 2);
    put(bytes, 0x86, 1, 2);     // sections
    put(bytes, 0x94, 0xF0, 2);  // bytes of the optional header
    put(bytes, 0x96, dll.isLibrary ? 0x2022 : 0x22, 2);
    const std::size_t optional = 0x98;
    put(bytes, optional, 0x20B, 2);
    put32(bytes, optional + 60, contentAt);
    put32(bytes, optional + 108, 16);
    put32(bytes, directoriesAt, exports);
    put32(bytes, directoriesAt + 8, imports);
    if (delayedBy == DelayedBy::Directory && !dll.delayedImports.empty()) {
        put32(bytes, directoriesAt + 13 * 8, delayed);
    }
    const std::size_t section = optional + 0xF0;
    put32(bytes, section + 8, content.bytes().size());
    put32(bytes, section + 12, sectionAddress);
    put32(bytes, section + 16, content.bytes().size());
    put32(bytes, section + 20, contentAt);
    bytes.insert(bytes.end(), content.bytes().begin(), content.bytes().end());
    return bytes;
}

std::string dllText(const DllFile& dll, DelayedBy delayedBy) {
    const std::vector<std::uint8_t> bytes = dllBytes(dll, delayedBy);
    return {bytes.begin(), bytes.end()};
}

}  // namespace camhost::test
