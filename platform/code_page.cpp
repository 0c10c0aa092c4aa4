#include "platform/code_page.h"

#include <algorithm>
#include <array>

namespace platform {

namespace {

// Bytes 80 to 9F; all other bytes stand for the character of the same number.
constexpr std::array<char16_t, 32> HighControls{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr char16_t Replacement = 0xFFFD;

constexpr bool IsHighSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// Decodes one character from the front of text and removes its bytes; U+FFFD for an ill-formed byte.
char32_t TakeUtf8(std::string_view& text) {
    const auto lead = static_cast<std::uint8_t>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    const bool wellFormedLead = lead < 0x80 || (lead >= 0xC2 && lead <= 0xF4);
    if (!wellFormedLead || text.size() < length) {
        text.remove_prefix(1);
        return Replacement;
    }
    char32_t character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i) {
        const auto next = static_cast<std::uint8_t>(text[i]);
        if ((next & 0xC0U) != 0x80U) {
            text.remove_prefix(1);
            return Replacement;
        }
        character = (character << 6U) | (next & 0x3FU);
    }
    text.remove_prefix(length);
    const bool tooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
    const bool surrogate = character >= 0xD800 && character <= 0xDFFF;
    return tooLong || surrogate || character > 0x10FFFF ? char32_t{Replacement} : character;
}

void AppendUtf8(std::string& out, char32_t character) {
    const auto byte = [](char32_t value) { return static_cast<char>(static_cast<std::uint8_t>(value)); };
    if (character < 0x80) {
        out += byte(character);
    } else if (character < 0x800) {
        out += byte(0xC0U | (character >> 6U));
        out += byte(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        out += byte(0xE0U | (character >> 12U));
        out += byte(0x80U | ((character >> 6U) & 0x3FU));
        out += byte(0x80U | (character & 0x3FU));
    } else {
        out += byte(0xF0U | (character >> 18U));
        out += byte(0x80U | ((character >> 12U) & 0x3FU));
        out += byte(0x80U | ((character >> 6U) & 0x3FU));
        out += byte(0x80U | (character & 0x3FU));
    }
}

}  // namespace

char16_t WideFromByte(std::uint8_t byte) {
    return byte >= 0x80 && byte <= 0x9F ? HighControls[byte - 0x80U] : char16_t{byte};
}

std::u16string WideFromBytes(std::string_view bytes) {
    std::u16string text;
    WideFromBytesInto(bytes, text);
    return text;
}

void WideFromBytesInto(std::string_view bytes, std::u16string& text) {
    constexpr unsigned FirstOfUpperHalf = 0x80;
    text.resize(bytes.size());
    // Nearly every text is of the lower half: two plain loops, which the compiler makes into ones over many
    // bytes at a time, take a fraction of the other's time.
    unsigned bits = 0;
    for (const char byte : bytes) bits |= static_cast<std::uint8_t>(byte);
    if (bits < FirstOfUpperHalf) {
        std::transform(bytes.begin(), bytes.end(), text.begin(),
                       [](char byte) { return static_cast<char16_t>(byte); });
    } else {
        std::transform(bytes.begin(), bytes.end(), text.begin(),
                       [](char byte) { return WideFromByte(static_cast<std::uint8_t>(byte)); });
    }
}

std::string BytesFromWide(std::u16string_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const char16_t character : text) {
        if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
            bytes += static_cast<char>(static_cast<std::uint8_t>(character));
            continue;
        }
        const auto* const place = std::find(HighControls.begin(), HighControls.end(), character);
        bytes += place == HighControls.end() ? '?' : static_cast<char>(0x80 + (place - HighControls.begin()));
    }
    return bytes;
}

std::u16string WideFromUtf8(std::string_view text) {
    std::u16string wide;
    wide.reserve(text.size());
    while (!text.empty()) {
        const char32_t character = TakeUtf8(text);
        if (character < 0x10000) {
            wide += static_cast<char16_t>(character);
        } else {
            wide += static_cast<char16_t>(0xD800U + ((character - 0x10000U) >> 10U));
            wide += static_cast<char16_t>(0xDC00U + ((character - 0x10000U) & 0x3FFU));
        }
    }
    return wide;
}

std::string Utf8FromWide(std::u16string_view text) {
    std::string utf8;
    utf8.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t character = text[i];
        if (IsHighSurrogate(text[i]) && i + 1 < text.size() && IsLowSurrogate(text[i + 1])) {
            character = 0x10000U + ((character - 0xD800U) << 10U) + (char32_t{text[i + 1]} - 0xDC00U);
            ++i;
        } else if (IsHighSurrogate(text[i]) || IsLowSurrogate(text[i])) {
            character = Replacement;
        }
        AppendUtf8(utf8, character);
    }
    return utf8;
}

std::string Utf8FromBytes(std::string_view bytes) {
    return Utf8FromWide(WideFromBytes(bytes));
}

char16_t FoldCase(char16_t character) {
    if (character >= u'A' && character <= u'Z') return static_cast<char16_t>(character + 0x20);
    if (character >= 0xC0 && character <= 0xDE && character != 0xD7)
        return static_cast<char16_t>(character + 0x20);
    switch (character) {
        case 0x0160:
            return 0x0161;
        case 0x0152:
            return 0x0153;
        case 0x017D:
            return 0x017E;
        case 0x0178:
            return 0x00FF;
        default:
            return character;
    }
}

char FoldByte(char byte) {
    const char16_t folded = FoldCase(WideFromByte(static_cast<std::uint8_t>(byte)));
    switch (folded) {
        case 0x0161:
            return static_cast<char>(0x9A);
        case 0x0153:
            return static_cast<char>(0x9C);
        case 0x017E:
            return static_cast<char>(0x9E);
        default:
            return folded <= 0xFF ? static_cast<char>(static_cast<std::uint8_t>(folded)) : byte;
    }
}

bool EqualFolded(std::u16string_view a, std::u16string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char16_t x, char16_t y) { return FoldCase(x) == FoldCase(y); });
}

bool EqualFoldedBytes(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return FoldByte(x) == FoldByte(y); });
}

std::string FoldedBytes(std::string_view bytes) {
    std::string folded(bytes);
    std::transform(folded.begin(), folded.end(), folded.begin(), FoldByte);
    return folded;
}

}  // namespace platform
