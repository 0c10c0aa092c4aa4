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

#include <array>
#include <cstddef>
#include <cstdint>

#include "platform/jet/errors.h"
#include "platform/jet/sort_weights.h"

namespace jet {

namespace {

constexpr char AscendingFlag = 0x7F;
constexpr char DescendingFlag = static_cast<char>(0x80);
constexpr std::size_t MaximumCharacters = 255;

constexpr char SectionEnd = 0x01;
constexpr char KeyEnd = 0x00;
constexpr std::size_t SpecialsLead = 3;  // section ends before the special characters
constexpr std::size_t SpecialBase = 0x8003;
constexpr std::uint8_t SpecialMark = 0x06;

/// The part of a text that an index sees.
std::u16string_view IndexedPart(std::u16string_view text) {
    text = text.substr(0, MaximumCharacters);
    const std::size_t last = text.find_last_not_of(u' ');
    return text.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
}

/// Bytes of a key under construction, at most so many. Deliberately not cleared: a key is made for every row.
template <std::size_t Capacity>
class Section {
  public:
    void Put(std::size_t byte) { mBytes[mCount++] = static_cast<char>(byte & 0xFFU); }

    /// One byte, or two for a weight from 100h on.
    void PutWeight(std::uint16_t weight) {
        if (weight > 0xFF) Put(weight >> 8U);
        Put(weight);
    }

    std::size_t Count() const { return mCount; }
    void Shorten(std::size_t count) { mCount = count; }
    std::string_view View() const { return {mBytes.data(), mCount}; }

  private:
    std::array<char, Capacity> mBytes;
    std::size_t mCount = 0;
};

void ComplementFrom(std::string& key, std::size_t start) {
    for (std::size_t i = start; i < key.size(); ++i) key[i] = static_cast<char>(~key[i]);
}

/// The three sections of a Jet 4 key.
class KeyParts4 {
  public:
    /// False for a character that has no weight in this order.
    bool Add(char16_t character) {
        const std::size_t place = PlaceOf(character);
        if (place == NotInRepertoire) return false;
        const Weight& weight = GeneralWeights4[place];
        if (weight.Special != 0) AddSpecial(weight.Special);
        if (weight.Units == 0) return true;
        mPrimary.PutWeight(weight.Primary);
        for (int unit = 0; unit < weight.Units; ++unit) mAccents.Put(weight.Accent);
        if (weight.Accent != NoAccent) mAccentsKept = mAccents.Count();
        return true;
    }

    void AppendTo(std::string& key) const {
        key += mPrimary.View();
        key += SectionEnd;
        key += mAccents.View().substr(0, mAccentsKept);
        if (mSpecials.Count() != 0) {
            key.append(SpecialsLead, SectionEnd);
            key += mSpecials.View();
        }
        key += KeyEnd;
    }

  private:
    void AddSpecial(std::uint8_t code) {
        const std::size_t position = SpecialBase + 4 * (mAccents.Count() + 1);
        mSpecials.Put(position >> 8U);
        mSpecials.Put(position);
        mSpecials.Put(SpecialMark);
        mSpecials.Put(code);
    }

    Section<MaximumCharacters * 2> mPrimary;
    Section<MaximumCharacters * 2> mAccents;
    Section<MaximumCharacters * 4> mSpecials;
    std::size_t mAccentsKept = 0;
};

}  // namespace

void AppendTextKey4(std::string& key, std::u16string_view text, bool ascending) {
    KeyParts4 parts;
    for (const char16_t character : IndexedPart(text)) {
        if (!parts.Add(character)) throw DataError(InvalidDataArgument);
    }
    key += ascending ? AscendingFlag : DescendingFlag;
    const std::size_t start = key.size();
    parts.AppendTo(key);
    if (ascending) return;
    ComplementFrom(key, start);
    key += KeyEnd;
}

void AppendTextKey3(std::string& key, std::u16string_view text, bool ascending) {
    Section<MaximumCharacters * 2> primary;
    Section<MaximumCharacters * 2 + 3> halves;
    halves.Put(0);
    std::size_t kept = halves.Count();
    for (const char16_t character : IndexedPart(text)) {
        const std::size_t place = PlaceOf(character);
        const Weight& weight = GeneralWeights3[place == NotInRepertoire ? u'?' : place];
        primary.PutWeight(weight.Primary);
        if (weight.Accent == NoHalfByte) continue;
        for (int unit = 0; unit < weight.Units; ++unit) halves.Put(weight.Accent);
        if (weight.Accent != PlainHalfByte) kept = halves.Count();
    }
    halves.Shorten(kept);

    key += ascending ? AscendingFlag : DescendingFlag;
    const std::size_t start = key.size();
    key += primary.View();
    if (kept > 1) {
        halves.Put(0);
        if (halves.Count() % 2 != 0) halves.Put(0);
        for (std::size_t i = 0; i < halves.Count(); i += 2)
            key += static_cast<char>(halves.View()[i] << 4 | halves.View()[i + 1]);
    } else {
        key += KeyEnd;
    }
    if (!ascending) ComplementFrom(key, start);
}

}  // namespace jet
