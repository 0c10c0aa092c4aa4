#include "tools/sample_site/canonical_cell.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "platform/code_page.h"

namespace sample {

namespace {

void AppendEscaped(std::string& cell, char c) {
    switch (c) {
        case '\\':
            cell += "\\\\";
            break;
        case '\t':
            cell += "\\t";
            break;
        case '\n':
            cell += "\\n";
            break;
        case '\r':
            cell += "\\r";
            break;
        default:
            cell += c;
    }
}

std::string Escaped(std::string_view utf8) {
    std::string cell;
    cell.reserve(utf8.size());
    for (const char c : utf8) AppendEscaped(cell, c);
    return cell;
}

void AppendTwoDigits(std::string& cell, int number) {
    cell += static_cast<char>('0' + number / 10 % 10);
    cell += static_cast<char>('0' + number % 10);
}

constexpr std::array<std::uint32_t, 256> CrcTable() {
    constexpr std::uint32_t Polynomial = 0xEDB88320U;
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t remainder = byte;
        for (int bit = 0; bit < 8; ++bit) remainder = (remainder >> 1U) ^ ((remainder & 1U) * Polynomial);
        table[byte] = remainder;
    }
    return table;
}

}  // namespace

std::string TextCell(std::string_view text) {
    // Most texts are plain ASCII and stay as they are.
    const bool isPlain = std::none_of(text.begin(), text.end(),
                                      [](char c) { return static_cast<signed char>(c) < ' ' || c == '\\'; });
    return isPlain ? std::string(text) : Escaped(platform::Utf8FromBytes(text));
}

std::string LongCell(std::int64_t value) {
    return std::to_string(value);
}

std::string SingleCell(float value) {
    std::array<char, 64> digits{};
    const auto result =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
    return {digits.data(), result.ptr};
}

std::string CurrencyCell(std::int64_t scaled) {
    constexpr std::uint64_t Unit = 10'000;
    const std::uint64_t magnitude = scaled < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(scaled)
                                               : static_cast<std::uint64_t>(scaled);
    std::string cell = scaled < 0 ? "-" : "";
    cell += std::to_string(magnitude / Unit);
    cell += '.';
    AppendTwoDigits(cell, static_cast<int>(magnitude % Unit / 100));
    AppendTwoDigits(cell, static_cast<int>(magnitude % 100));
    return cell;
}

std::string DateCell(platform::CalendarDay day) {
    std::string cell;
    AppendTwoDigits(cell, day.Year / 100);
    AppendTwoDigits(cell, day.Year % 100);
    cell += '-';
    AppendTwoDigits(cell, day.Month);
    cell += '-';
    AppendTwoDigits(cell, day.Day);
    return cell;
}

std::uint32_t CellChecksum(std::string_view cell) {
    static constexpr std::array<std::uint32_t, 256> Table = CrcTable();
    std::uint32_t remainder = ~std::uint32_t{0};
    for (const char c : cell) {
        remainder = (remainder >> 8U) ^ Table[(remainder ^ static_cast<std::uint8_t>(c)) & 0xFFU];
    }
    return ~remainder;
}

}  // namespace sample
