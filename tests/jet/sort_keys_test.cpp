#include "platform/jet/sort_keys.h"

#include <gtest/gtest.h>
#include <vector>

#include "platform/jet/index_key.h"
#include "tests/support/expect_error.h"
#include "tests/support/hex.h"

namespace jet {
namespace {

using test::Hex;
using test::ToHex;

struct TextKey {
    std::u16string Text;
    std::string_view Key;
    bool Ascending = true;
};

std::string Key4(std::u16string_view text, bool ascending = true) {
    std::string key;
    AppendTextKey4(key, text, ascending);
    return ToHex(key);
}

std::string Key3(std::u16string_view text, bool ascending = true) {
    std::string key;
    AppendTextKey3(key, text, ascending);
    return ToHex(key);
}

std::string Normal(std::string_view key) {
    return ToHex(Hex(key));
}

// Keys that the engine itself wrote.

TEST(Jet4TextKeys, AreTheEnginesOwn) {
    const std::vector<TextKey> keys{
        {u"Århus", "7F / 4A 69 57 6F 6B / 01 / 1A / 00"},
        {u"Münster", "7F / 60 6F 62 6B 6D 51 69 / 01 / 02 13 / 00"},
        {u"S-958 22", "7F / 6B 48 40 46 07 3A 3A / 01 / 01 01 01 / 80 0B 06 82 / 00"},
        {u"Forêts d'érables",
         "7F / 53 64 69 51 6D 6B 07 4F 51 69 4A 4C 5E 51 6B / 01 / 02 02 02 12 02 02 02 02 0E / 01 01 01 / "
         "80 "
         "27 06 80 / 00"},
        {u"NuNuCa Nuß-Nougat-Creme",
         "7F / 62 6F 62 6F 4D 4A 07 62 6F 6B 6B 62 64 6F 55 4A 6D 4D 69 51 60 51 / 01 / 01 01 01 / 80 33 06 "
         "82 "
         "/ 80 4B 06 82 / 00"},
        {u"--", "7F / 01 / 01 01 01 / 80 07 06 82 / 80 07 06 82 / 00"},
        {u"AA-'AA", "7F / 4A 4A 4A 4A / 01 / 01 01 01 / 80 0F 06 82 / 80 0F 06 80 / 00"},
        {u"-Á-Á-", "7F / 4A 4A / 01 / 0E 0E / 01 01 01 / 80 07 06 82 / 80 0B 06 82 / 80 0F 06 82 / 00"},
        {u"AA\x01"
         u"AA",
         "7F / 4A 4A 4A 4A / 01 / 01 01 01 / 80 0F 06 03 / 00"},
        {std::u16string(u"AA\0AA", 5), "7F / 4A 4A 4A 4A / 01 / 00"},
        {u"AA\tAA", "7F / 4A 4A 08 03 4A 4A / 01 / 00"},
        {u"AA½AA", "7F / 4A 4A 37 16 4A 4A / 01 / 00"},
        {u"AAÆAA", "7F / 4A 4A 4A 51 4A 4A / 01 / 00"},
        {u"AAøAA", "7F / 4A 4A 64 4A 4A / 01 / 02 02 21 / 00"},
        {u"AAªAA", "7F / 4A 4A 4A 4A 4A / 01 / 02 02 03 / 00"},
        {u"", "7F / 01 / 00"},
        {u"-", "80 / FE / FE FE FE / 7F F8 F9 7D / FF / 00", false},
        {u"AAâAA", "80 / B5 B5 B5 B5 B5 / FE / FD FD ED / FF / 00", false},
        {u"AA_AA", "80 / B5 B5 D4 FC B5 B5 / FE / FF / 00", false},
    };
    for (const TextKey& row : keys) {
        SCOPED_TRACE(testing::Message() << "key " << row.Key);
        EXPECT_EQ(Key4(row.Text, row.Ascending), Normal(row.Key));
    }
}

TEST(Jet3TextKeys, AreTheEnginesOwn) {
    const std::vector<TextKey> keys{
        {u"Berlin", "7F / 61 66 75 6D 6A 70 / 00"},
        {u"Münster", "7F / 6F 78 70 76 77 66 75 / 06 00"},
        {u"Forêts d'érables", "7F / 67 72 75 66 77 76 11 64 18 66 75 60 61 6D 66 76 / 02 52 40"},
        {u"AAÆAA", "7F / 60 60 60 66 60 60 / 00"},
        {u"-ÁA-Á", "7F / 1E 60 60 1E 60 / 04 24 00"},
        {u"aäaaÓaaƒaaäaaÛa", "7F / 60 60 60 60 72 60 60 32 60 60 60 60 60 78 60 / 02 62 24 22 22 62 25 00"},
        {u"a\ta", "7F / 60 11 60 / 00"},
        {u"ABCDEFGHIJKLMNOPQRSTUVWXYZ",
         "7F / 60 61 62 64 66 67 68 69 6A 6B 6C 6D 6F 70 72 73 74 75 76 77 78 7A 7B 7C 7D 7E / 00"},
        {u"aŠa", "7F / 60 76 60 / 02 A0"},
        {u"a€a", "7F / 60 10 60 / 00"},
        {u"", "7F 00"},
        {u"aÓa", "80 / 9F 8D 9F / FD BF", false},
        {u"aäaaÓaaƒaaäaaÛa", "80 / 9F 9F 9F 9F 8D 9F 9F CD 9F 9F 9F 9F 9F 87 9F / FD 9D DB DD DD 9D DA FF",
         false},
        {u"aßa", "80 / 9F 89 89 9F / FF", false},
    };
    for (const TextKey& row : keys) {
        SCOPED_TRACE(testing::Message() << "key " << row.Key);
        EXPECT_EQ(Key3(row.Text, row.Ascending), Normal(row.Key));
    }
}

TEST(TextKeys, LetterCaseAndBlanksAtTheEndNeverCount) {
    const std::vector<std::pair<std::u16string, std::u16string>> equals{
        {u"KÖLN", u"köln"}, {u"ŠŽŒŸ", u"šžœÿ"},      {u"text", u"text   "},
        {u"", u"   "},      {u"Straße", u"STRASSE"}, {u"m²", u"m2"},
    };
    for (const auto& [a, b] : equals) {
        EXPECT_EQ(Key4(a), Key4(b));
        // Jet 3 did not know the caron Z and took it for a control character in either case.
        EXPECT_EQ(Key3(a), Key3(b));
    }
    EXPECT_NE(Key4(u"a"), Key4(u" a"));
    EXPECT_NE(Key4(u"a"), Key4(u"a\t"));
    EXPECT_NE(Key4(u"co-op"), Key4(u"coop"));
    EXPECT_NE(Key4(u"resume"), Key4(u"résumé"));
}

TEST(TextKeys, OnlyTheFirst255CharactersCount) {
    const std::u16string longest(255, u'x');
    EXPECT_EQ(Key4(longest), Key4(longest + u"yz"));
    EXPECT_EQ(Key3(longest), Key3(longest + u"yz"));
    EXPECT_NE(Key4(longest), Key4(longest.substr(1)));
    // Characters without weight count towards the 255.
    EXPECT_EQ(Key4(std::u16string(255, u'-')), Key4(std::u16string(255, u'-') + u'a'));
    // The worst case of every section still has room: special characters, accented ligature neighbours.
    EXPECT_EQ(Hex(Key4(std::u16string(255, u'\''))).size(), 1U + 1 + 3 + 255 * 4 + 1);
    EXPECT_EQ(Hex(Key4(std::u16string(254, u'Æ') + u'É')).size(), 1U + 509 + 1 + 509 + 1);
}

TEST(TextKeys, ACharacterOutsideTheCodePageIsRefusedInJet4AndAQuestionMarkInJet3) {
    std::string key = "before";
    EXPECT_EQ(test::ErrorOf([&] { AppendTextKey4(key, u"Мир", true); }).Number, 3001);
    EXPECT_EQ(key, "before");
    EXPECT_EQ(Key3(u"Мир"), Key3(u"???"));
}

TEST(TextKeys, EveryByteOfTheCodePageHasItsOrder) {
    // Signs before digits before letters, each letter with its accented forms at its side.
    const std::u16string_view ascending[] = {
        u" ", u"\t", u"!", u"\"", u"#", u"(", u".", u"@", u"_", u"~", u"¿", u"+", u"<", u"±", u"×",
        u"£", u"·",  u"€", u"0",  u"1", u"½", u"2", u"9", u"a", u"ª", u"á", u"à", u"â", u"ä", u"ã",
        u"å", u"æ",  u"b", u"c",  u"ç", u"d", u"ð", u"e", u"é", u"f", u"ƒ", u"n", u"ñ", u"o", u"ö",
        u"ø", u"œ",  u"s", u"š",  u"ß", u"t", u"™", u"u", u"ü", u"y", u"ÿ", u"z", u"ž"};
    // ½ and ™ stand apart from their neighbours by weight only.
    for (std::size_t i = 1; i < std::size(ascending); ++i) {
        if (ascending[i] == u"½" || ascending[i - 1] == u"½" || ascending[i] == u"þ") continue;
        EXPECT_LT(Hex(Key4(ascending[i - 1])), Hex(Key4(ascending[i]))) << i;
    }
}

}  // namespace
}  // namespace jet
