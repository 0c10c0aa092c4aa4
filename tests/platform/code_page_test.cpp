#include "platform/code_page.h"

#include <gtest/gtest.h>

namespace platform {
namespace {

TEST(CodePage, HighControlsStandForTheirUnicodeCharacters) {
    EXPECT_EQ(WideFromBytes("\x80\x85\x92\x9F"), u"\u20AC\u2026\u2019\u0178");
    EXPECT_EQ(WideFromBytes("A\xE9\xFF"), u"A\u00E9\u00FF");
}

TEST(CodePage, UndefinedBytesStandForTheControlsOfTheirNumber) {
    EXPECT_EQ(WideFromBytes("\x81\x8D\x8F\x90\x9D"), u"\x81\x8D\x8F\x90\x9D");
}

TEST(CodePage, EveryByteSurvivesTheWayThereAndBack) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
    EXPECT_EQ(BytesFromWide(WideFromBytes(all)), all);
    EXPECT_EQ(BytesFromWide(WideFromUtf8(Utf8FromBytes(all))), all);
}

TEST(CodePage, CharactersThatTheCodePageLacksBecomeQuestionMarks) {
    EXPECT_EQ(BytesFromWide(u"a\u041C\u0080z"), "a??z");
}

TEST(CodePage, Utf8OfEveryLength) {
    const std::u16string wide = u"A\u00E9\u20AC\U0001F600";
    EXPECT_EQ(Utf8FromWide(wide), "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(WideFromUtf8(Utf8FromWide(wide)), wide);
}

TEST(CodePage, IllFormedUtf8BecomesReplacementCharacters) {
    for (const char* text :
         {"\xFF", "\xC3", "\x80", "\xC0\x80", "\xE0\x80\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80"}) {
        const std::u16string wide = WideFromUtf8(text);
        ASSERT_FALSE(wide.empty()) << text;
        EXPECT_EQ(wide.front(), 0xFFFD) << text;
    }
    EXPECT_EQ(Utf8FromWide(std::u16string(1, char16_t{0xD800})), "\xEF\xBF\xBD");
}

TEST(CodePage, LetterCaseIsFoldedForAllLettersOfTheCodePageAndNothingElse) {
    // upper, lower
    const std::pair<int, int> pairs[]{{'A', 'a'},   {'Z', 'z'},   {0xC0, 0xE0}, {0xDE, 0xFE},
                                      {0x8A, 0x9A}, {0x8C, 0x9C}, {0x8E, 0x9E}, {0x9F, 0xFF}};
    for (const auto& [upper, lower] : pairs) {
        const std::string a(1, static_cast<char>(upper));
        const std::string b(1, static_cast<char>(lower));
        EXPECT_TRUE(EqualFoldedBytes(a, b)) << upper;
        EXPECT_TRUE(EqualFolded(WideFromBytes(a), WideFromBytes(b))) << upper;
    }
    EXPECT_FALSE(EqualFoldedBytes("\xD7", "\xF7"));  // multiplication and division sign
    EXPECT_FALSE(EqualFoldedBytes("\xDF", "\xFF"));  // sharp s and y with diaeresis
    EXPECT_FALSE(EqualFoldedBytes("[", "{"));
    EXPECT_FALSE(EqualFolded(u"AB", u"A"));
}

}  // namespace
}  // namespace platform
