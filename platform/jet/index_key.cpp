// A part of a key is a flag byte and the value's bytes:
//
//     00                     Null, FF when the column descends
//     7F, then               Yes/No       00 for True, FF for False
//                            Byte         the byte
//                            Integer, Long, Currency
//                                         big-endian, highest bit inverted
//                            Single, Double, Date
//                                         big-endian; sign bit set when it was clear, else all bits inverted
//                            GUID, Binary blocks of eight bytes padded with zeros, each followed by 09 when
//                                         another follows, else by the number of bytes used in it
//                            Text, Memo   see sort_keys
//
// A descending part has every byte inverted, but for the 09s between blocks.
#include "platform/jet/index_key.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <string_view>

#include "platform/jet/errors.h"
#include "platform/jet/sort_keys.h"

namespace jet {

namespace {

constexpr unsigned char ValueFlag = 0x7F;
constexpr unsigned char NullFlag = 0x00;
constexpr unsigned char TrueByte = 0x00;
constexpr unsigned char FalseByte = 0xFF;
constexpr std::size_t BlockLength = 8;
constexpr char BlockFollows = 0x09;

template <typename T>
const T& Expect(const Value& value) {
    if (const T* held = std::get_if<T>(&value)) return *held;
    throw DataError(DataConversion);
}

/// The flag and an integer of so many bytes, highest byte first.
void AppendBigEndian(std::string& key, std::uint64_t bits, unsigned length, bool ascending) {
    const std::uint64_t turned = ascending ? bits : ~bits;
    key += static_cast<char>(ascending ? ValueFlag : static_cast<unsigned char>(~ValueFlag));
    for (unsigned i = length; i-- > 0;)
        key += static_cast<char>(static_cast<unsigned char>(turned >> (8 * i)));
}

void AppendSigned(std::string& key, std::int64_t value, unsigned length, bool ascending) {
    const std::uint64_t topBit = std::uint64_t{1} << (8 * length - 1);
    AppendBigEndian(key, static_cast<std::uint64_t>(value) ^ topBit, length, ascending);
}

void AppendReal(std::string& key, std::uint64_t bits, unsigned length, bool ascending) {
    const std::uint64_t signBit = std::uint64_t{1} << (8 * length - 1);
    AppendBigEndian(key, (bits & signBit) != 0 ? ~bits : bits | signBit, length, ascending);
}

void AppendBlocks(std::string& key, std::string_view bytes, bool ascending) {
    const auto turned = [ascending](char byte) { return ascending ? byte : static_cast<char>(~byte); };
    key += turned(static_cast<char>(ValueFlag));
    for (bool last = false; !last;) {
        const std::string_view block = bytes.substr(0, BlockLength);
        bytes.remove_prefix(block.size());
        last = bytes.empty();
        for (std::size_t i = 0; i < BlockLength; ++i) key += turned(i < block.size() ? block[i] : '\0');
        key += last ? turned(static_cast<char>(block.size())) : BlockFollows;
    }
}

/// A GUID's bytes in the order of its text: the first three of its parts are stored lowest byte first.
std::string GuidInTextOrder(std::string bytes) {
    constexpr std::size_t GuidLength = 16;
    if (bytes.size() != GuidLength) throw DataError(DataConversion);
    std::reverse(bytes.begin(), bytes.begin() + 4);
    std::reverse(bytes.begin() + 4, bytes.begin() + 6);
    std::reverse(bytes.begin() + 6, bytes.begin() + 8);
    return bytes;
}

void AppendText(std::string& key, const std::u16string& text, bool ascending, Version version) {
    if (version == Version::Jet3) {
        AppendTextKey3(key, text, ascending);
    } else {
        AppendTextKey4(key, text, ascending);
    }
}

}  // namespace

void AppendKey(std::string& key, const Value& value, ColumnType type, bool ascending, Version version) {
    if (std::holds_alternative<std::monostate>(value)) {
        key += static_cast<char>(ascending ? NullFlag : static_cast<unsigned char>(~NullFlag));
        return;
    }
    switch (type) {
        case ColumnType::Boolean:
            return AppendBigEndian(key, Expect<bool>(value) ? TrueByte : FalseByte, 1, ascending);
        case ColumnType::Byte:
            return AppendBigEndian(key, static_cast<std::uint64_t>(Expect<std::int32_t>(value)), 1,
                                   ascending);
        case ColumnType::Integer:
            return AppendSigned(key, Expect<std::int32_t>(value), 2, ascending);
        case ColumnType::Long:
            return AppendSigned(key, Expect<std::int32_t>(value), 4, ascending);
        case ColumnType::Currency:
            return AppendSigned(key, Expect<Currency>(value).Scaled, 8, ascending);
        case ColumnType::Single:
            return AppendReal(key, std::bit_cast<std::uint32_t>(static_cast<float>(Expect<double>(value))), 4,
                              ascending);
        case ColumnType::Double:
            return AppendReal(key, std::bit_cast<std::uint64_t>(Expect<double>(value)), 8, ascending);
        case ColumnType::Date:
            return AppendReal(key, std::bit_cast<std::uint64_t>(Expect<platform::OleDate>(value).Serial), 8,
                              ascending);
        case ColumnType::Binary:
            return AppendBlocks(key, Expect<Binary>(value).Bytes, ascending);
        case ColumnType::Guid:
            return AppendBlocks(key, GuidInTextOrder(Expect<Binary>(value).Bytes), ascending);
        case ColumnType::Text:
        case ColumnType::Memo:
            return AppendText(key, Expect<std::u16string>(value), ascending, version);
        default:
            throw DataError(InvalidDataArgument);
    }
}

bool IsIndexable(ColumnType type, Version version) {
    switch (type) {
        case ColumnType::LongBinary:
        case ColumnType::Numeric:
            return false;
        case ColumnType::Memo:
            return version == Version::Jet4;
        default:
            return true;
    }
}

}  // namespace jet
