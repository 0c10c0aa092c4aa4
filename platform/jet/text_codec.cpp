#include "platform/jet/text_codec.h"

#include <algorithm>

#include "platform/code_page.h"
#include "platform/jet/bytes.h"
#include "platform/jet/errors.h"

namespace jet {

namespace {

constexpr std::uint16_t CompressedMark = 0xFEFF;  // FF FE in the file
constexpr std::size_t ShortestCompressed = 3;
constexpr char16_t HighestCompressed = 0xFF;

bool IsMarked(std::span<const std::uint8_t> bytes) {
    return bytes.size() >= 2 && LoadU16(bytes.data()) == CompressedMark;
}

std::u16string DecodePairs(std::span<const std::uint8_t> bytes) {
    std::u16string text(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = LoadU16(&bytes[2 * i]);
    return text;
}

std::u16string DecodeCompressed(std::span<const std::uint8_t> bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (bool single = true; !bytes.empty(); single = !single) {
        std::size_t length = 0;
        if (single) {
            length = static_cast<std::size_t>(std::ranges::find(bytes, std::uint8_t{0}) - bytes.begin());
            const std::size_t end = text.size();
            text.resize(end + length);
            std::copy_n(bytes.begin(), length, text.begin() + static_cast<std::ptrdiff_t>(end));
        } else {
            for (; length + 1 < bytes.size() && bytes[length] != 0; length += 2)
                text.push_back(LoadU16(&bytes[length]));
        }
        bytes = bytes.subspan(std::min(bytes.size(), length + 1));
    }
    return text;
}

}  // namespace

std::u16string DecodeText(std::span<const std::uint8_t> bytes, Version version) {
    if (version == Version::Jet3) return platform::WideFromBytes(std::string(bytes.begin(), bytes.end()));
    return IsMarked(bytes) ? DecodeCompressed(bytes.subspan(2)) : DecodePairs(bytes);
}

bool IsCompressible(std::u16string_view text) {
    // Taken from 0, 1 leaves high bits too. A plain loop becomes one over many characters at a time.
    unsigned bits = 0;
    for (const char16_t c : text) bits |= c | static_cast<char16_t>(c - 1);
    return text.size() >= ShortestCompressed && bits <= HighestCompressed;
}

std::size_t EncodedLength(std::u16string_view text, bool compressed) {
    return compressed ? text.size() + sizeof CompressedMark : 2 * text.size();
}

void CheckEncodable(std::u16string_view text) {
    if (!text.empty() && text.front() == CompressedMark) throw DataError(DataConversion);
}

std::uint8_t* EncodeText(std::u16string_view text, bool compressed, std::uint8_t* target) {
    if (compressed) {
        StoreU16(target, CompressedMark);
        target += sizeof CompressedMark;
        for (const char16_t c : text) *target++ = static_cast<std::uint8_t>(c);
        return target;
    }
    for (const char16_t c : text) {
        StoreU16(target, c);
        target += sizeof c;
    }
    return target;
}

}  // namespace jet
