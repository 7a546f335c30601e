// SPDX-License-Identifier: MIT
#include "camhost/pictures/png_text.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "camhost/base/checksum.h"

namespace camhost {

namespace {

constexpr std::array<std::uint8_t, 8> signature{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
// Length, type and checksum of a chunk, each four bytes.
constexpr std::size_t chunkFrame = 12;
constexpr std::size_t headerEnd = signature.size() + chunkFrame + 13;
constexpr std::string_view textType = "tEXt";

void appendNumber(std::vector<std::uint8_t>& bytes, std::uint32_t value) {
    for (const unsigned shift : {24U, 16U, 8U, 0U}) {
        bytes.push_back(static_cast<std::uint8_t>((value >> shift) & 0xFFU));
    }
}

std::uint32_t readNumber(std::span<const std::uint8_t> bytes, std::size_t at) {
    return (std::uint32_t{bytes[at]} << 24U) | (std::uint32_t{bytes[at + 1]} << 16U) |
           (std::uint32_t{bytes[at + 2]} << 8U) | std::uint32_t{bytes[at + 3]};
}

bool isPng(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= headerEnd &&
           std::equal(signature.begin(), signature.end(), bytes.begin());
}

std::vector<std::uint8_t> textChunk(const std::string& key, const std::string& text) {
    std::vector<std::uint8_t> chunk;
    appendNumber(chunk, static_cast<std::uint32_t>(key.size() + 1 + text.size()));
    chunk.insert(chunk.end(), textType.begin(), textType.end());
    chunk.insert(chunk.end(), key.begin(), key.end());
    chunk.push_back(0);
    chunk.insert(chunk.end(), text.begin(), text.end());
    appendNumber(chunk, crc32(std::span(chunk).subspan(4)));
    return chunk;
}

}  // namespace

void insertPngTexts(std::vector<std::uint8_t>& png, const PngTexts& texts) {
    if (!isPng(png)) {
        return;
    }
    std::vector<std::uint8_t> chunks;
    for (const auto& [key, text] : texts) {
        const std::vector<std::uint8_t> chunk = textChunk(key, text);
        chunks.insert(chunks.end(), chunk.begin(), chunk.end());
    }
    png.insert(png.begin() + headerEnd, chunks.begin(), chunks.end());
}

PngTexts readPngTexts(std::span<const std::uint8_t> png) {
    PngTexts texts;
    if (!isPng(png)) {
        return texts;
    }
    std::size_t at = signature.size();
    while (png.size() - at >= chunkFrame) {
        const std::size_t length = readNumber(png, at);
        if (length > png.size() - at - chunkFrame) {
            break;
        }
        const auto body = png.subspan(at + 4, 4 + length);
        const bool isText = std::equal(textType.begin(), textType.end(), body.begin());
        if (isText && crc32(body) == readNumber(png, at + 8 + length)) {
            const std::string content(body.begin() + 4, body.end());
            const auto zero = content.find('\0');
            if (zero != content.npos) {
                texts.emplace_back(content.substr(0, zero), content.substr(zero + 1));
            }
        }
        at += chunkFrame + length;
    }
    return texts;
}

}  // namespace camhost
