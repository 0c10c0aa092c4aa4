// Jet 4 key of a text:
//
//     7F  primary weights  01  accents  [01 01 01  special characters]  00
//
// A character has a primary weight of one or two bytes and one accent byte, 02 standing for "no accent"; the
// 02s at the end of the accents are dropped. Ligatures and the sharp s count as the two letters they stand
// for. Hyphens, apostrophes and control characters have no weight: "co-op" sorts beside "coop", and a group
// of four bytes says where the special character stood: 8000h + 4 * (characters before it + 1) + 3, high byte
// first, then 06 and its code.
//
// Jet 3 key of a text:
//
//     7F  primary weights  half bytes  [00]
//
// Every character has a primary weight. Only letters that have accented forms, and those forms, add a half
// byte, 2 standing for "no accent"; the 2s at the end are dropped. If any remain they stand between two half
// bytes 0 (and one more for an even count); otherwise one byte 00 ends the key.
//
// A descending key starts with 80 and has everything after it complemented; Jet 4 adds one byte 00.
#include "platform/jet/sort_keys.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/error.h"
#include "platform/jet/errors.h"
#include "platform/jet/sort_weights.h"

namespace jet {

namespace {

constexpr char AscendingFlag = 0x7F;
constexpr char DescendingFlag = static_cast<char>(0x80);
constexpr std::size_t MaximumCharacters = 255;

constexpr char SectionEnd = 0x01;
constexpr char KeyEnd = 0x00;
constexpr char SpecialMark = 0x06;

/// The part of a text that an index sees.
std::u16string_view IndexedPart(std::u16string_view text) {
    text = text.substr(0, MaximumCharacters);
    const std::size_t last = text.find_last_not_of(u' ');
    return text.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
}

char* PutWeight(char* out, std::uint16_t weight) {
    if (weight > 0xFF) *out++ = static_cast<char>(weight >> 8U);
    *out++ = static_cast<char>(weight & 0xFFU);
    return out;
}

void ComplementFrom(std::string& key, std::size_t start) {
    for (std::size_t i = start; i < key.size(); ++i) key[i] = static_cast<char>(~key[i]);
}

/// The three sections of a Jet 4 key under construction; every character adds at most so many bytes.
class KeyParts4 {
  public:
    /// False for a character that has no weight in this order.
    bool Add(char16_t character) {
        const std::size_t place = PlaceOf(character);
        if (place == NotInRepertoire) return false;
        const Weight weight = GeneralWeights4[place];
        if (weight.Special != 0) {
            AddSpecial(weight.Special);
            return true;
        }
        if (weight.Units == 0) return true;
        mPrimaryEnd = PutWeight(mPrimaryEnd, weight.Primary);
        for (int unit = 0; unit < weight.Units; ++unit) mAccents[mUnits++] = static_cast<char>(weight.Accent);
        if (weight.Accent != NoAccent) mAccentsKept = mUnits;
        return true;
    }

    void AppendTo(std::string& key) const {
        key.append(mPrimary.data(), mPrimaryEnd);
        key += SectionEnd;
        key.append(mAccents.data(), mAccentsKept);
        if (mSpecialsEnd != mSpecials.data()) {
            key.append(3, SectionEnd);
            key.append(mSpecials.data(), mSpecialsEnd);
        }
        key += KeyEnd;
    }

  private:
    void AddSpecial(std::uint8_t code) {
        const std::size_t position = 0x8003U + 4U * (mUnits + 1);
        *mSpecialsEnd++ = static_cast<char>(position >> 8U);
        *mSpecialsEnd++ = static_cast<char>(position & 0xFFU);
        *mSpecialsEnd++ = SpecialMark;
        *mSpecialsEnd++ = static_cast<char>(code);
    }

    // Deliberately not cleared: a key is made for every row.
    std::array<char, MaximumCharacters * 2> mPrimary;
    std::array<char, MaximumCharacters * 2> mAccents;
    std::array<char, MaximumCharacters * 4> mSpecials;
    char* mPrimaryEnd = mPrimary.data();
    char* mSpecialsEnd = mSpecials.data();
    std::size_t mUnits = 0;
    std::size_t mAccentsKept = 0;
};

/// Half bytes packed two to a byte, the first in the high half.
void AppendPacked(std::string& key, const char* halves, std::size_t count) {
    for (std::size_t i = 0; i < count; i += 2)
        key +=
            static_cast<char>(static_cast<unsigned>(halves[i]) << 4U | static_cast<unsigned>(halves[i + 1]));
}

}  // namespace

void AppendTextKey4(std::string& key, std::u16string_view text, bool ascending) {
    KeyParts4 parts;
    for (const char16_t character : IndexedPart(text)) {
        if (!parts.Add(character)) throw MakeError(InvalidArgument);
    }
    key += ascending ? AscendingFlag : DescendingFlag;
    const std::size_t start = key.size();
    parts.AppendTo(key);
    if (ascending) return;
    ComplementFrom(key, start);
    key += KeyEnd;
}

void AppendTextKey3(std::string& key, std::u16string_view text, bool ascending) {
    // A half byte 0 first; behind the kept ones there is room for the closing 0 and the padding.
    std::array<char, MaximumCharacters * 2 + 3> halves{};
    std::size_t count = 1;
    std::size_t kept = 1;
    std::array<char, MaximumCharacters * 2> primary;
    char* primaryEnd = primary.data();
    for (const char16_t character : IndexedPart(text)) {
        const std::size_t place = PlaceOf(character);
        const Weight weight = GeneralWeights3[place == NotInRepertoire ? u'?' : place];
        primaryEnd = PutWeight(primaryEnd, weight.Primary);
        if (weight.Accent == NoHalfByte) continue;
        for (int unit = 0; unit < weight.Units; ++unit) halves[count++] = static_cast<char>(weight.Accent);
        if (weight.Accent != PlainHalfByte) kept = count;
    }
    key += ascending ? AscendingFlag : DescendingFlag;
    const std::size_t start = key.size();
    key.append(primary.data(), primaryEnd);
    if (kept == 1) {
        key += KeyEnd;
    } else {
        std::fill(halves.begin() + static_cast<std::ptrdiff_t>(kept), halves.end(), '\0');
        AppendPacked(key, halves.data(), kept + 1 + (kept + 1) % 2);
    }
    if (!ascending) ComplementFrom(key, start);
}

}  // namespace jet
