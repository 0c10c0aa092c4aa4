// The weights that characters of code page 1252 have in the General sort order of Jet 4 and Jet 3.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace jet {

inline constexpr std::uint8_t NoAccent = 0x02;       // Jet 4
inline constexpr std::uint8_t PlainHalfByte = 0x02;  // Jet 3: a letter that could carry a mark, and does not
inline constexpr std::uint8_t NoHalfByte = 0xFF;     // Jet 3: a character that never carries one

/// What one character adds to a key. A primary weight below 100h is one byte.
struct Weight {
    std::uint16_t Primary = 0;
    std::uint8_t Units = 0;   // characters it counts as: 2 for the expanding ones, 0 for special ones and NUL
    std::uint8_t Accent = 0;  // Jet 4: accent byte; Jet 3: half byte or NoHalfByte
    std::uint8_t Special = 0;  // Jet 4: code of a special character, 0 for all others
};

// The repertoire: U+0000 to U+00FF by their number, then the characters of code page 1252 beyond.
inline constexpr std::u16string_view BeyondLatin1 = u"ŒœŠšŸŽžƒˆ˜–—‘’‚“”„†‡•…‰‹›€™";
inline constexpr std::size_t Latin1Count = 256;
inline constexpr std::size_t RepertoireSize = Latin1Count + BeyondLatin1.size();
inline constexpr std::size_t NotInRepertoire = RepertoireSize;

/// A character's place in the tables, or NotInRepertoire.
constexpr std::size_t PlaceOf(char16_t character) {
    if (character < Latin1Count) return character;
    const std::size_t place = BeyondLatin1.find(character);
    return place == std::u16string_view::npos ? NotInRepertoire : Latin1Count + place;
}

using WeightTable = std::array<Weight, RepertoireSize>;

extern const WeightTable GeneralWeights4;
extern const WeightTable GeneralWeights3;

}  // namespace jet
