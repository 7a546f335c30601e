// SPDX-License-Identifier: MIT
#include "camhost/doctor/dll_file.h"

#include <algorithm>
#include <concepts>
#include <string_view>
#include <utility>

#include "camhost/base/texts.h"

namespace camhost {

namespace {

// Far more than any library has: they end what a damaged file would have us read.
constexpr std::size_t mostSections = 96;
constexpr std::size_t mostLibraries = 1024;
constexpr std::size_t mostNames = std::size_t{1} << 17U;
constexpr std::size_t longestName = std::size_t{1} << 14U;
constexpr std::size_t mostText = std::size_t{1} << 24U;

constexpr std::size_t exportDirectory = 0;
constexpr std::size_t importDirectory = 1;
constexpr std::size_t delayDirectory = 13;

constexpr std::size_t delayDescriptorBytes = 32;

// Thrown inside this file alone.
struct Damage {
    const char* reason;
};

struct Section {
    std::uint32_t address;
    std::uint32_t bytes;  // of the file
    std::uint32_t offset;
};

// Places in memory, "addresses", are those from the start of the loaded library.
class CDllReader {
public:
    explicit CDllReader(std::span<const std::uint8_t> bytes) : m_bytes(bytes) {}

    DllFile read();

private:
    template <std::unsigned_integral Number>
    Number at(std::size_t offset) const;
    template <std::unsigned_integral Number>
    Number atAddress(std::uint64_t address) const;
    std::optional<std::size_t> offsetOf(std::uint64_t address, std::size_t bytes) const;
    std::optional<std::string_view> findText(std::uint64_t address) const;
    std::string textAt(std::uint64_t address);

    void readSections(std::size_t offset, std::size_t count);
    std::uint32_t directory(std::size_t index) const;
    std::vector<std::string> readExports();
    std::vector<std::string> readThunks(std::uint64_t address);
    std::vector<DllImport> readImports();
    std::vector<DllImport> readDelayedImports();
    std::vector<DllImport> searchDelayedImports();
    bool looksDelayed(std::size_t offset) const;
    void addDelayedImport(std::size_t descriptor, std::vector<DllImport>& imports);

    std::span<const std::uint8_t> m_bytes;
    std::size_t m_optionalHeader = 0;
    std::uint32_t m_headerBytes = 0;
    std::vector<Section> m_sections;
    std::size_t m_names = 0;
    std::size_t m_text = 0;
};

template <std::unsigned_integral Number>
Number CDllReader::at(std::size_t offset) const {
    if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof(Number)) {
        throw Damage{"it ends too early"};
    }
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < sizeof(Number); ++i) {
        value |= std::uint64_t{m_bytes[offset + i]} << (8U * i);
    }
    return static_cast<Number>(value);
}

template <std::unsigned_integral Number>
Number CDllReader::atAddress(std::uint64_t address) const {
    const auto offset = offsetOf(address, sizeof(Number));
    if (!offset) {
        throw Damage{"one of its tables leads out of it"};
    }
    return at<Number>(*offset);
}

std::optional<std::size_t> CDllReader::offsetOf(std::uint64_t address, std::size_t bytes) const {
    const auto within = [&](std::uint64_t start, std::uint64_t size, std::uint64_t offset) {
        return address >= start && address - start <= size && size - (address - start) >= bytes &&
               offset + (address - start) + bytes <= m_bytes.size();
    };
    if (within(0, m_headerBytes, 0)) {
        return static_cast<std::size_t>(address);
    }
    for (const Section& section : m_sections) {
        if (within(section.address, section.bytes, section.offset)) {
            return static_cast<std::size_t>(section.offset + (address - section.address));
        }
    }
    return std::nullopt;
}

std::optional<std::string_view> CDllReader::findText(std::uint64_t address) const {
    const auto start = offsetOf(address, 1);
    if (!start) {
        return std::nullopt;
    }
    const std::string_view rest(reinterpret_cast<const char*>(m_bytes.data()) + *start,
                                std::min(m_bytes.size() - *start, longestName));
    const std::size_t end = rest.find('\0');
    return end == rest.npos ? std::nullopt : std::optional(rest.substr(0, end));
}

std::string CDllReader::textAt(std::uint64_t address) {
    const auto text = findText(address);
    if (!text) {
        throw Damage{"one of its names has no end, or leads out of it"};
    }
    m_text += text->size();
    if (++m_names > mostNames || m_text > mostText) {
        throw Damage{"it has more names than any library"};
    }
    return std::string(*text);
}

void CDllReader::readSections(std::size_t offset, std::size_t count) {
    constexpr std::size_t sectionBytes = 40;
    if (count > mostSections) {
        throw Damage{"it has more sections than any library"};
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t section = offset + i * sectionBytes;
        m_sections.push_back({at<std::uint32_t>(section + 12), at<std::uint32_t>(section + 16),
                              at<std::uint32_t>(section + 20)});
    }
}

// The address of a directory; 0 for one that is not there.
std::uint32_t CDllReader::directory(std::size_t index) const {
    const auto count = at<std::uint32_t>(m_optionalHeader + 108);
    return index < count ? at<std::uint32_t>(m_optionalHeader + 112 + 8 * index) : 0;
}

std::vector<std::string> CDllReader::readExports() {
    std::vector<std::string> names;
    const std::uint32_t exports = directory(exportDirectory);
    if (exports == 0) {
        return names;
    }
    const auto count = atAddress<std::uint32_t>(std::uint64_t{exports} + 24);
    const std::uint64_t table = atAddress<std::uint32_t>(std::uint64_t{exports} + 32);
    for (std::uint64_t i = 0; i < count; ++i) {
        names.push_back(textAt(atAddress<std::uint32_t>(table + 4 * i)));
    }
    return names;
}

// The names of one library's functions, up to the empty entry.
std::vector<std::string> CDllReader::readThunks(std::uint64_t address) {
    constexpr std::uint64_t byNumber = std::uint64_t{1} << 63U;
    std::vector<std::string> names;
    for (;; address += 8) {
        const auto thunk = atAddress<std::uint64_t>(address);
        if (thunk == 0) {
            return names;
        }
        if (thunk < byNumber) {
            names.push_back(textAt((thunk & 0x7FFFFFFFU) + 2));  // behind its hint
        } else if (++m_names > mostNames) {
            throw Damage{"it has more imports than any library"};
        }
    }
}

std::vector<DllImport> CDllReader::readImports() {
    constexpr std::uint64_t descriptorBytes = 20;
    std::vector<DllImport> imports;
    const std::uint64_t table = directory(importDirectory);
    for (std::uint64_t at = table; table != 0; at += descriptorBytes) {
        const auto name = atAddress<std::uint32_t>(at + 12);
        if (name == 0) {
            break;
        }
        if (imports.size() == mostLibraries) {
            throw Damage{"it imports more libraries than any library"};
        }
        const auto lookup = atAddress<std::uint32_t>(at);
        const auto addresses = atAddress<std::uint32_t>(at + 16);
        DllImport wanted{.library = textAt(name)};
        wanted.functions = readThunks(lookup != 0 ? lookup : addresses);
        imports.push_back(std::move(wanted));
    }
    return imports;
}

std::vector<DllImport> CDllReader::readDelayedImports() {
    std::vector<DllImport> imports;
    const std::uint64_t table = directory(delayDirectory);
    if (table == 0) {
        return searchDelayedImports();
    }
    for (std::uint64_t at = table;; at += delayDescriptorBytes) {
        const auto name = atAddress<std::uint32_t>(at + 4);
        if (name == 0) {
            return imports;
        }
        if (imports.size() == mostLibraries) {
            throw Damage{"it imports more libraries than any library"};
        }
        DllImport wanted{.library = textAt(name)};
        wanted.functions = readThunks(atAddress<std::uint32_t>(at + 16));
        imports.push_back(std::move(wanted));
    }
}

// A descriptor: 1, the addresses of a name, a handle and two tables, and three zeros.
bool CDllReader::looksDelayed(std::size_t offset) const {
    const auto word = [&](std::size_t index) { return at<std::uint32_t>(offset + 4 * index); };
    if (word(0) != 1 || word(5) != 0 || word(6) != 0 || word(7) != 0 || word(1) == 0 ||
        word(3) % 8 != 0 || word(4) % 8 != 0 || !offsetOf(word(3), 8) || !offsetOf(word(4), 8)) {
        return false;
    }
    const auto name = findText(word(1));
    return name && lowered(*name).ends_with(".dll");
}

// GNU linkers put the descriptors into the file and none of them into the directory. What
// only looks like one is left out.
std::vector<DllImport> CDllReader::searchDelayedImports() {
    std::vector<DllImport> imports;
    std::size_t left = m_bytes.size();
    for (const Section& section : m_sections) {
        const std::size_t end =
            std::min(m_bytes.size(),
                     std::size_t{section.offset} + std::min<std::size_t>(section.bytes, left));
        for (std::size_t at = section.offset; at + delayDescriptorBytes <= end; at += 4) {
            if (imports.size() < mostLibraries && looksDelayed(at)) {
                addDelayedImport(at, imports);
            }
        }
        left -= std::min<std::size_t>(section.bytes, left);
    }
    return imports;
}

void CDllReader::addDelayedImport(std::size_t descriptor, std::vector<DllImport>& imports) {
    try {
        DllImport wanted{.library = textAt(at<std::uint32_t>(descriptor + 4))};
        wanted.functions = readThunks(at<std::uint32_t>(descriptor + 16));
        imports.push_back(std::move(wanted));
    } catch (const Damage&) {
        return;
    }
}

DllFile CDllReader::read() {
    constexpr std::uint16_t programMark = 0x5A4D;        // "MZ"
    constexpr std::uint32_t headerMark = 0x00004550;     // "PE"
    constexpr std::uint16_t optionalHeaderMark = 0x20B;  // of 64 bits
    if (m_bytes.size() < 2 || at<std::uint16_t>(0) != programMark) {
        throw Damage{"it is no file of Windows"};
    }
    const std::size_t header = at<std::uint32_t>(0x3C);
    if (at<std::uint32_t>(header) != headerMark) {
        throw Damage{"it has no header of a library"};
    }
    DllFile file;
    file.machine = at<std::uint16_t>(header + 4);
    file.isLibrary = (at<std::uint16_t>(header + 22) & 0x2000U) != 0;
    if (file.machine != machineX64) {
        return file;
    }
    m_optionalHeader = header + 24;
    if (at<std::uint16_t>(m_optionalHeader) != optionalHeaderMark) {
        throw Damage{"its header is not that of 64 bits"};
    }
    m_headerBytes = at<std::uint32_t>(m_optionalHeader + 60);
    readSections(m_optionalHeader + at<std::uint16_t>(header + 20), at<std::uint16_t>(header + 6));
    file.exports = readExports();
    file.imports = readImports();
    file.delayedImports = readDelayedImports();
    return file;
}

}  // namespace

std::string machineName(std::uint16_t machine) {
    constexpr std::pair<std::uint16_t, const char*> names[] = {
        {machineX64, "x64"},
        {std::uint16_t{0x014C}, "x86 (32 bits)"},
        {std::uint16_t{0x01C4}, "ARM (32 bits)"},
        {std::uint16_t{0xAA64}, "ARM64"}};
    for (const auto& [number, name] : names) {
        if (number == machine) {
            return name;
        }
    }
    std::string text = "machine 0x";
    for (const unsigned shift : {12U, 8U, 4U, 0U}) {
        text += "0123456789ABCDEF"[(machine >> shift) & 0xFU];
    }
    return text;
}

std::optional<DllFile> readDllFile(std::span<const std::uint8_t> bytes, std::string& reason) {
    try {
        return CDllReader(bytes).read();
    } catch (const Damage& damage) {
        reason = damage.reason;
        return std::nullopt;
    }
}

NameKind kindOfNames(const std::vector<std::string>& names) {
    const auto count = [&](std::string_view start) {
        return std::count_if(names.begin(), names.end(),
                             [&](const std::string& name) { return name.starts_with(start); });
    };
    const auto gnu = count("_Z");
    const auto microsoft = count("?");
    if (gnu == 0 && microsoft == 0) {
        return NameKind::Plain;
    }
    return gnu > microsoft ? NameKind::Gnu : NameKind::Microsoft;
}

}  // namespace camhost
