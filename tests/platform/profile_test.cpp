#include <gtest/gtest.h>

#include "platform/site.h"
#include "tests/support/site_folder.h"

namespace platform {
namespace {

std::string Read(const std::string& profile, const std::string& key, std::size_t capacity = 100) {
    const test::ScratchFolder folder;
    test::WriteBytes(folder / "kSWCatalog.ini", profile);
    return ProfileText((folder / "kSWCatalog.ini").string(), "iQ-Stock", key, capacity);
}

TEST(Profile, AnswersAsTheProfileCallDoes) {
    struct Case {
        const char* What;
        const char* Profile;
        const char* Value;
    };
    const Case cases[]{
        {"plain", "[iQ-Stock]\r\nServer=SRV1\r\n", "SRV1"},
        {"letter case of section and key", "[IQ-STOCK]\nSERVER=SRV1\n", "SRV1"},
        {"blanks around", "[iQ-Stock]\n  Server \t=  SRV1  \n", "SRV1"},
        {"first of several keys", "[iQ-Stock]\nServer=ONE\nServer=TWO\n", "ONE"},
        {"one pair of quotes", "[iQ-Stock]\nServer=\" SRV1 \"\n", " SRV1 "},
        {"single quotes", "[iQ-Stock]\nServer='SRV1'\n", "SRV1"},
        {"quotes that do not match", "[iQ-Stock]\nServer=\"SRV1'\n", "\"SRV1'"},
        {"comment line", "[iQ-Stock]\n;Server=NO\nServer=SRV1\n", "SRV1"},
        {"semicolon inside a value", "[iQ-Stock]\nServer=SRV1;x\n", "SRV1;x"},
        {"other section", "[Other]\nServer=NO\n", ""},
        {"key in another section", "[Other]\nServer=NO\n[iQ-Stock]\nServer=SRV1\n", "SRV1"},
        {"empty value", "[iQ-Stock]\nServer=\n", ""},
        {"empty file", "", ""},
        {"high bytes stay", "[iQ-Stock]\nServer=S\xE9\n", "S\xE9"},
    };
    for (const Case& c : cases) EXPECT_EQ(Read(c.Profile, "Server"), c.Value) << c.What;
}

TEST(Profile, ValuesAreCutAtTheBuffer) {
    EXPECT_EQ(Read("[iQ-Stock]\nServer=" + std::string(150, 'x') + "\n", "Server"), std::string(99, 'x'));
    EXPECT_EQ(Read("[iQ-Stock]\nServer=SRV1\n", "Server", 0), "");
}

TEST(Profile, MissingFileGivesNothing) {
    EXPECT_EQ(ProfileText("/nowhere/at/all.ini", "iQ-Stock", "Server", 100), "");
}

TEST(Settings, ComeFromTheUsersStore) {
    const test::SiteFolder folder;
    EXPECT_EQ(Setting("Directory", "Home", "fallback"), "fallback");
    folder.SetHome("C:\\Vantora");
    EXPECT_EQ(Setting("Directory", "Home", "fallback"), "C:\\Vantora");
    EXPECT_EQ(Setting("Directory", "Away", "fallback"), "fallback");
}

}  // namespace
}  // namespace platform
