#include "export/part_number.h"

#include <string_view>

namespace exporting {

using platform::ByteString;

namespace {

constexpr std::size_t NumberLength = 18;
constexpr std::size_t MaskLength = 3;

// A mask character is the position in the number before which its dash goes.
constexpr std::string_view MaskPositions = "123456789ABCDEFGHI";

/// Positions refer to the number with the dashes that the same mask has put in before.
void InsertDashes(ByteString& number, std::string_view mask) {
    mask = mask.substr(0, mask.find_last_not_of(' ') + 1);
    for (const char character : mask) {
        const std::size_t place = MaskPositions.find(character);
        if (place != std::string_view::npos) number.insert(place, 1, '-');
    }
}

}  // namespace

ByteString FormatPartNumber(const ByteString& text) {
    if (text.size() < NumberLength + MaskLength) return text;
    ByteString number;
    number.reserve(NumberLength + MaskLength);  // room for a dash of every mask character
    number.assign(text, 0, NumberLength);
    InsertDashes(number, std::string_view(text).substr(NumberLength, MaskLength));
    return number;
}

}  // namespace exporting
