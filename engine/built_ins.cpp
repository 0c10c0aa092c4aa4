#include "engine/built_ins.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <limits>

#include "platform/code_page.h"
#include "platform/error.h"

namespace engine {

ByteString gCodeChars{StandardCodeChars};

namespace {

constexpr std::uint32_t Radix = 40;
constexpr std::int32_t CharactersPerGroup = 3;
constexpr std::int32_t BytesPerGroup = 2;

/// Blanks, which stand at the front of the alphabet, are most of what is compressed.
std::uint32_t CodeOf(char character) {
    if (gCodeChars.starts_with(character)) return 0;
    const std::size_t place = gCodeChars.find(character);
    return place == ByteString::npos ? 0 : static_cast<std::uint32_t>(place);
}

/// The pieces between the delimiters as the platform's own split gives them, empty ones included.
std::vector<std::string_view> Pieces(std::string_view expression, std::string_view delimiter,
                                     std::int32_t limit, bool foldCase) {
    if (expression.empty() || limit == 0) return {};
    if (delimiter.empty()) return {expression};
    const ByteString searched = foldCase ? platform::FoldedBytes(expression) : ByteString(expression);
    const ByteString wanted = foldCase ? platform::FoldedBytes(delimiter) : ByteString(delimiter);

    std::vector<std::string_view> pieces;
    std::size_t start = 0;
    while (limit < 0 || pieces.size() + 1 < static_cast<std::size_t>(limit)) {
        const std::size_t end = searched.find(wanted, start);
        if (end == ByteString::npos) break;
        pieces.push_back(expression.substr(start, end - start));
        start = end + wanted.size();
    }
    pieces.push_back(expression.substr(start));
    return pieces;
}

bool CanBeShown(std::uint8_t byte) {
    return (byte >= 32 && byte <= 126) || byte == 145 || byte == 146 || byte >= 160;
}

ByteString HexDumpLine(std::size_t position, std::string_view bytes) {
    constexpr std::size_t HexWidth = 55;
    std::array<char, 24> piece{};
    std::snprintf(piece.data(), piece.size(), "%06zu", position);
    ByteString line = piece.data();
    for (const char byte : bytes) {
        std::snprintf(piece.data(), piece.size(), " %02X",
                      static_cast<unsigned>(static_cast<std::uint8_t>(byte)));
        line += piece.data();
    }
    line.resize(std::max(line.size(), HexWidth), ' ');
    line += "  ";
    for (const char byte : bytes) line += CanBeShown(static_cast<std::uint8_t>(byte)) ? byte : '.';
    return line + "\r\n";
}

/// The first two characters of every group, made anew when the alphabet has changed: looking up a pair costs
/// less than taking it apart.
class CharacterPairs {
  public:
    static constexpr std::size_t Length = 2;

    const char* At(std::uint32_t pair) const { return &mPairs[pair * Length]; }

    void Follow(std::string_view alphabet) {
        if (std::string_view(mAlphabet.data(), mAlphabet.size()) == alphabet) return;
        alphabet.copy(mAlphabet.data(), mAlphabet.size());
        for (std::size_t pair = 0; pair < std::size_t{Radix} * Radix; ++pair) {
            mPairs[pair * Length] = mAlphabet[pair / Radix];
            mPairs[pair * Length + 1] = mAlphabet[pair % Radix];
        }
    }

    char Single(std::uint32_t place) const { return mAlphabet[place]; }

  private:
    std::array<char, Radix> mAlphabet{};
    std::array<char, Length * Radix * Radix> mPairs{};
};

}  // namespace

ByteString Crm(ByteString& Source) {
    const std::size_t groups = (Source.size() + CharactersPerGroup - 1) / CharactersPerGroup;
    Source.resize(groups * CharactersPerGroup, ' ');
    ByteString packed(groups * BytesPerGroup, '\0');
    for (std::size_t group = 0; group < groups; ++group) {
        const char* const characters = Source.data() + group * CharactersPerGroup;
        const std::uint32_t value =
            (CodeOf(characters[0]) * Radix + CodeOf(characters[1])) * Radix + CodeOf(characters[2]);
        packed[group * BytesPerGroup] = static_cast<char>(value >> 8U);
        packed[group * BytesPerGroup + 1] = static_cast<char>(value & 0xFFU);
    }
    return packed;
}

ByteString Ucm(ByteString& Source) {
    if (Source.size() % BytesPerGroup != 0) Source += '\0';
    return Ucm(std::string_view(Source));
}

ByteString Ucm(std::string_view Source) {
    ByteString text;
    UcmInto(Source, text);
    return text;
}

void UcmInto(std::string_view Source, ByteString& text) {
    static CharacterPairs characters;
    characters.Follow(gCodeChars);
    // Written in place: otherwise each character appended costs several times as much.
    text.resize((Source.size() + 1) / BytesPerGroup * CharactersPerGroup);
    char* end = text.data();
    const auto appendGroup = [&](char high, char low) {
        const auto value = static_cast<std::uint32_t>(static_cast<std::uint8_t>(high)) * 0x100U +
                           static_cast<std::uint8_t>(low);
        const std::uint32_t pair = value / Radix;
        if (pair < Radix * Radix) {
            end = std::copy_n(characters.At(pair), CharacterPairs::Length, end);
        } else {
            *end++ = characters.Single(pair % Radix);  // the first has no character
        }
        *end++ = characters.Single(value % Radix);
    };
    std::size_t start = 0;
    for (; start + 1 < Source.size(); start += BytesPerGroup) appendGroup(Source[start], Source[start + 1]);
    if (start < Source.size()) appendGroup(Source[start], '\0');
    text.resize(static_cast<std::size_t>(end - text.data()));
}

std::int32_t StrPos(std::string_view Source, std::string_view Target) {
    if (Source.empty()) return 0;
    const std::size_t place = Source.find(Target);
    return place == std::string_view::npos ? 0 : static_cast<std::int32_t>(place + 1);
}

std::string_view WithoutTail(std::string_view source) {
    constexpr std::string_view Tail("\0\t\n\r ", 5);
    return source.substr(0, source.find_last_not_of(Tail) + 1);
}

ByteString Trun(std::string_view Source, std::int32_t flgRemoveControlCharacters) {
    if (flgRemoveControlCharacters != 0) return ByteString(WithoutTail(Source));
    return ByteString(Source.substr(0, Source.find_last_not_of(' ') + 1));
}

std::vector<ByteString> Split(std::string_view Expression, std::string_view Delimiter, std::int32_t Limit,
                              std::int32_t Compare) {
    if (Limit < -1 || (Compare != 0 && Compare != 1)) throw platform::Error(platform::InvalidArgument);
    std::vector<ByteString> kept;
    for (const std::string_view piece : Pieces(Expression, Delimiter, Limit, Compare == 1)) {
        // An empty piece stands for a delimiter and goes with those that still contain one.
        if (!piece.empty() && piece.find(Delimiter) == std::string_view::npos) kept.emplace_back(piece);
    }
    return kept;
}

ByteString HexDump(std::string_view Data) {
    constexpr std::size_t BytesPerLine = 16;
    ByteString text;
    for (std::size_t start = 0; start < Data.size(); start += BytesPerLine)
        text += HexDumpLine(start + 1, Data.substr(start, BytesPerLine));
    return text;
}

}  // namespace engine
