// The tables of the General sort order, put together at compile time from runs of characters with equal
// steps, marks with the letters that carry them, and the few that expand to two letters.
#include "platform/jet/sort_weights.h"

namespace jet {

namespace {

/// Characters whose weights follow each other in equal steps.
struct Run {
    std::uint16_t First;
    std::uint16_t Step;
    std::u16string_view Characters;
};

constexpr std::array<std::uint8_t, 26> LetterWeights4{0x4A, 0x4C, 0x4D, 0x4F, 0x51, 0x53, 0x55, 0x57, 0x59,
                                                      0x5B, 0x5C, 0x5E, 0x60, 0x62, 0x64, 0x66, 0x68, 0x69,
                                                      0x6B, 0x6D, 0x6F, 0x71, 0x73, 0x75, 0x76, 0x78};

constexpr std::array<std::uint8_t, 26> LetterWeights3{0x60, 0x61, 0x62, 0x64, 0x66, 0x67, 0x68, 0x69, 0x6A,
                                                      0x6B, 0x6C, 0x6D, 0x6F, 0x70, 0x72, 0x73, 0x74, 0x75,
                                                      0x76, 0x77, 0x78, 0x7A, 0x7B, 0x7C, 0x7D, 0x7E};

/// Letters that Jet 3 gives a half byte even without an accent.
constexpr std::u16string_view AccentableLetters3 = u"ACEINOSUY";

constexpr std::array<Run, 26> Symbols4{{
    {0x07, 1, u" "},
    {0x0802, 1, u"\u00A0\t\n\v\f\r"},
    {0x09, 1, u"!\""},
    {0x0C, 2, u"#$%&()*,./:;?@"},
    {0x27, 1, u"["},
    {0x29, 1, u"\\]"},
    {0x2B02, 1, u"^_"},
    {0x2B07, 1, u"`"},
    {0x2B09, 2, u"{|}~"},
    {0x2B10, 1, u"¡¦¨¯´¸¿"},
    {0x2B1C, 1, u"˜"},
    {0x2B37, 1, u"‘’‚"},
    {0x2B3B, 1, u"“”„"},
    {0x2B46, 1, u"‹›"},
    {0x2C, 2, u"+<=>"},
    {0x3304, 1, u"±«"},
    {0x3307, 2, u"»×"},
    {0x330A, 1, u"÷"},
    {0x34A6, 1, u"¢£¤¥§©¬®°µ¶·"},
    {0x34B3, 1, u"†‡•"},
    {0x34B9, 1, u"…‰"},
    {0x35A1, 1, u"€"},
    {0x36, 2, u"0123456789"},
    {0x38, 2, u"¹²³"},
    {0x3712, 4, u"¼½¾"},
    {0x6E04, 1, u"™"},
}};

/// Special characters and their codes. U+0080 to U+009F follow DEL without a gap.
constexpr std::array<Run, 6> Specials4{{
    {0x03, 1, u"\x01\x02\x03\x04\x05\x06\x07\x08"},
    {0x0B, 1, u"\x0E\x0F\x10\x11\x12\x13\x14\x15\x16\x17\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F\x7F"},
    {0x80, 1, u"'"},
    {0x82, 1, u"-\u00AD"},
    {0x89, 1, u"–"},
    {0x8B, 1, u"—"},
}};
constexpr char16_t FirstC1Control = 0x80;
constexpr char16_t LastC1Control = 0x9F;
constexpr std::uint8_t FirstC1Code = 0x1E;

/// Jet 3 knows no gaps: the signs and digits in one row, and the letters of the north after Z.
constexpr std::array<Run, 5> Symbols3{{
    {0x12, 1, u"!\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~ƒ…†‡ˆ‰•˜™¡¢£¤¥¦§¨©ª¬®¯°±´µ¶·¸º¼½¾¿×÷0123456789"},
    {0x57, 1, u"¹²³"},
    {0x65, 0, u"Ðð"},
    {0x7F, 0, u"Þþ"},
    {0x81, 0, u"Øø"},
}};

/// Characters that Jet 3 takes for another one.
struct Alias {
    char16_t Character;
    std::u16string_view Equals;
};
constexpr std::array<Alias, 4> Aliases3{
    {{u'\'', u"‘’‚‹›"}, {u'"', u"“”„«»"}, {u'-', u"–—\u00AD"}, {u' ', u"\t\u00A0"}}};
constexpr std::uint8_t BlankWeight3 = 0x11;
constexpr std::uint8_t UnknownWeight3 = 0x10;  // control characters and what came after that order

/// A mark, its accent byte and half byte, and the letters that carry it.
struct Mark {
    std::uint8_t Accent4;
    std::uint8_t HalfByte3;
    std::u16string_view Characters;
    std::u16string_view Letters;
};
constexpr std::array<Mark, 13> Marks{{
    {0x03, NoHalfByte, u"ªº", u"AO"},
    {0x0E, 0x4, u"ÁÉÍÓÚÝáéíóúý", u"AEIOUYAEIOUY"},
    {0x0F, 0x3, u"ÀÈÌÒÙàèìòù", u"AEIOUAEIOU"},
    {0x12, 0x5, u"ÂÊÎÔÛâêîôû", u"AEIOUAEIOU"},
    {0x13, 0x6, u"ÄËÏÖÜŸäëïöüÿ", u"AEIOUYAEIOUY"},
    {0x14, 0xA, u"Šš", u"SS"},
    {0x14, NoHalfByte, u"Žž", u"ZZ"},
    {0x19, 0x7, u"ÃÑÕãñõ", u"ANOANO"},
    {0x1A, 0x8, u"Åå", u"AA"},
    {0x1C, 0x9, u"Çç", u"CC"},
    {0x21, NoHalfByte, u"Øø", u"OO"},
    {0x68, NoHalfByte, u"Ðð", u"DD"},
    {0x7B, NoHalfByte, u"ƒ", u"F"},
}};
constexpr std::uint8_t CircumflexAloneAccent4 = 0x03;  // U+02C6 sorts as "^" with this mark

struct Expansion {
    char16_t Character;
    char16_t First;
    char16_t Second;
};
constexpr std::array<Expansion, 7> Expansions{{{u'Æ', u'A', u'E'},
                                               {u'æ', u'A', u'E'},
                                               {u'Œ', u'O', u'E'},
                                               {u'œ', u'O', u'E'},
                                               {u'ß', u'S', u'S'},
                                               {u'Þ', u'T', u'H'},
                                               {u'þ', u'T', u'H'}}};

template <std::size_t Count>
constexpr void SetRuns(WeightTable& table, const std::array<Run, Count>& runs, std::uint8_t accent) {
    for (const Run& run : runs) {
        std::uint16_t weight = run.First;
        for (const char16_t character : run.Characters) {
            table[PlaceOf(character)] = {weight, 1, accent, 0};
            weight = static_cast<std::uint16_t>(weight + run.Step);
        }
    }
}

constexpr void SetSpecial(WeightTable& table, char16_t character, std::size_t code) {
    table[PlaceOf(character)] = {0, 0, 0, static_cast<std::uint8_t>(code)};
}

constexpr std::uint16_t Pair(const std::array<std::uint8_t, 26>& letters, const Expansion& expansion) {
    return static_cast<std::uint16_t>(letters[expansion.First - u'A'] << 8U |
                                      letters[expansion.Second - u'A']);
}

constexpr WeightTable MakeTable4() {
    WeightTable table{};
    SetRuns(table, Symbols4, NoAccent);
    for (std::size_t i = 0; i < LetterWeights4.size(); ++i)
        table[u'A' + i] = table[u'a' + i] = {LetterWeights4[i], 1, NoAccent, 0};
    for (const Mark& mark : Marks) {
        for (std::size_t i = 0; i < mark.Characters.size(); ++i) {
            table[PlaceOf(mark.Characters[i])] = {LetterWeights4[mark.Letters[i] - u'A'], 1, mark.Accent4, 0};
        }
    }
    table[PlaceOf(u'ˆ')] = {table[u'^'].Primary, 1, CircumflexAloneAccent4, 0};
    for (const Expansion& expansion : Expansions)
        table[PlaceOf(expansion.Character)] = {Pair(LetterWeights4, expansion), 2, NoAccent, 0};
    for (const Run& run : Specials4) {
        for (std::size_t i = 0; i < run.Characters.size(); ++i)
            SetSpecial(table, run.Characters[i], run.First + i);
    }
    for (char16_t control = FirstC1Control; control <= LastC1Control; ++control)
        SetSpecial(table, control, FirstC1Code + (control - FirstC1Control));
    return table;
}

constexpr WeightTable MakeTable3() {
    WeightTable table{};
    table.fill({UnknownWeight3, 1, NoHalfByte, 0});
    SetRuns(table, Symbols3, NoHalfByte);
    table[u' '].Primary = BlankWeight3;
    for (const Alias& alias : Aliases3) {
        for (const char16_t character : alias.Equals) table[PlaceOf(character)] = table[alias.Character];
    }
    for (std::size_t i = 0; i < LetterWeights3.size(); ++i) {
        const bool accentable =
            AccentableLetters3.find(static_cast<char16_t>(u'A' + i)) != std::u16string_view::npos;
        const std::uint8_t half = accentable ? PlainHalfByte : NoHalfByte;
        table[u'A' + i] = table[u'a' + i] = {LetterWeights3[i], 1, half, 0};
    }
    for (const Mark& mark : Marks) {
        if (mark.HalfByte3 == NoHalfByte) continue;
        for (std::size_t i = 0; i < mark.Characters.size(); ++i) {
            table[PlaceOf(mark.Characters[i])] = {LetterWeights3[mark.Letters[i] - u'A'], 1, mark.HalfByte3,
                                                  0};
        }
    }
    for (const Expansion& expansion : Expansions) {
        if (expansion.First == u'T') continue;  // thorn is a letter of its own here
        table[PlaceOf(expansion.Character)] = {Pair(LetterWeights3, expansion), 2, PlainHalfByte, 0};
    }
    return table;
}

}  // namespace

constexpr WeightTable GeneralWeights4 = MakeTable4();
constexpr WeightTable GeneralWeights3 = MakeTable3();

}  // namespace jet
