// SPDX-License-Identifier: MIT
// Any pieces into a host's buffer at any bound, against the C library's formats;
// and text between UTF-8 and wide, where nothing but bad sequences may change.
#include <cinttypes>

#include "fuzz/input/fuzz_input.h"
#include "platform/text.h"

namespace {

std::string numbersText(std::int32_t integer, double number) {
    std::array<char, 400> text{};
    std::snprintf(text.data(), text.size(), "%" PRId32 "|%f", integer, number);
    return text.data();
}

std::string serialText(std::int64_t serial) {
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), "%" PRIX64, static_cast<std::uint64_t>(serial));
    return text.data();
}

void checkBound(std::size_t bound, const std::string& text, std::int32_t integer, double number,
                const std::string& whole) {
    const std::size_t kept = std::min<std::size_t>({bound, 255, whole.size()});
    // No larger than the bound needs it.
    const std::size_t capacity = std::min<std::size_t>(bound, 255) + 1;
    const auto buffer = std::make_unique<char[]>(capacity);
    std::fill_n(buffer.get(), capacity, '\x5A');
    writeText(buffer.get(), bound, text, integer, "|", number, text);
    require(std::memcmp(buffer.get(), whole.data(), kept) == 0, "the kept part is the beginning");
    require(buffer[kept] == '\0', "the text is terminated");
    require(std::all_of(buffer.get() + kept + 1, buffer.get() + capacity,
                        [](char byte) { return byte == '\x5A'; }),
            "nothing is written behind the terminator");
}

void checkConversion(const std::string& text) {
    const std::wstring wide = toWide(text);
    const std::string narrow = toNarrow(wide);
    require(toWide(narrow) == wide, "wide text comes back from UTF-8");
    require(toNarrow(toWide(narrow)) == narrow, "valid UTF-8 comes back from wide text");
    const bool isAscii = std::all_of(text.begin(), text.end(), [](char c) { return c >= 0; });
    require(!isAscii || narrow == text, "ASCII comes back as it was");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CFuzzInput input(data, size);
    const std::size_t bound = input.take<std::uint16_t>() % 301;
    const auto integer = input.take<std::int32_t>();
    const auto serial = input.take<std::int64_t>();
    const auto number = input.take<double>();
    const std::string text = input.takeRest();
    if (number == number) {
        const std::string whole = text + numbersText(integer, number) + text;
        // That of the input, and those at which something ends.
        for (const std::size_t tried :
             {bound, std::size_t{0}, std::size_t{1}, std::size_t{254}, std::size_t{255},
              std::size_t{256}, text.size(), whole.size() - 1, whole.size(), whole.size() + 1}) {
            checkBound(tried, text, integer, number, whole);
        }
        writeText(nullptr, 255, text, integer, number);
    }
    require(hexadecimalText(serial) == serialText(serial),
            "a serial number is written in upper-case hexadecimal");
    checkConversion(text);
    return 0;
}
