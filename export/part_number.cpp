#include "export/part_number.h"

namespace exporting {

using platform::ByteString;

namespace {

constexpr std::size_t NumberLength = 18;
constexpr std::size_t MaskLength = 3;

// A mask character is the position in the number before which its dash goes.
constexpr std::string_view MaskPositions = "123456789ABCDEFGHI";

/// Positions refer to the number with the dashes that the same mask has put in before.
ByteString InsertDashes(std::string_view plain, std::string_view mask) {
    ByteString number;
    number.reserve(NumberLength + MaskLength);
    number = plain;
    mask = mask.substr(0, mask.find_last_not_of(' ') + 1);
    for (const char character : mask) {
        const std::size_t place = MaskPositions.find(character);
        if (place != std::string_view::npos) number.insert(place, 1, '-');
    }
    return number;
}

}  // namespace

ByteString FormatPartNumber(std::string_view text) {
    if (text.size() < NumberLength + MaskLength) return ByteString(text);
    return InsertDashes(text.substr(0, NumberLength), text.substr(NumberLength, MaskLength));
}

}  // namespace exporting
