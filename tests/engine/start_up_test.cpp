// From the configuration file to a running engine, and its end.
#include <gtest/gtest.h>

#include "engine/built_ins.h"
#include "engine/recorded_error.h"
#include "engine/terminal_map.h"
#include "platform/site.h"
#include "tests/engine/site_builder.h"
#include "tests/support/expect_error.h"

namespace engine {
namespace {

TEST(SiteConfiguration, FillsTheSiteAndStartsTheEngine) {
    test::SiteBuilder site;
    site.Ini =
        "[other]\nServer=X\n[IQ-stock]\nServer=SRV1\nDataShare=DATA\nCatalogShare=CAT\nDirectory=D01\n"
        "TerminalID=T9\nCustomerNumber=00123\n";
    site.Start();
    EXPECT_EQ(gEpcInfo->Server, "SRV1");
    EXPECT_EQ(gEpcInfo->DataShare, "DATA");
    EXPECT_EQ(gEpcInfo->CatalogShare, R"(\\SRV1\CAT\)");
    EXPECT_EQ(gEpcInfo->TerminalID, "T9");
    EXPECT_EQ(gEpcInfo->CustomerNumber, 123);
    EXPECT_EQ(gSystem->KSTLLNK(), R"(\\SRV1\KSTLLNK\D01)");
    EXPECT_EQ(gSystem->CATCON(), R"(\\SRV1\CATCON\)");
    EXPECT_EQ(&gEngine->VantSys(), gSystem.get());
    EXPECT_EQ(gSystem->TerminalID, "0");
    EXPECT_EQ(gSystem->ComputerName, platform::ComputerName());
    EXPECT_TRUE(site.Window.Messages.empty());

    site.Ini = "[iQ-Stock]\nServer=SRV1\nDirectory=" + std::string(150, 'd') + "\nCustomerNumber=\n";
    site.Start();
    EXPECT_EQ(gSystem->mDirectory, std::string(99, 'd'));
    EXPECT_EQ(gEpcInfo->CustomerNumber, 0);
}

TEST(SiteConfiguration, AMissingFileIsToldUnlessSilent) {
    test::SiteBuilder site;
    site.Ini.reset();
    site.Write();
    LoadSiteConfiguration(true, site.Window);
    EXPECT_TRUE(site.Window.Messages.empty());
    LoadSiteConfiguration(false, site.Window);
    EXPECT_FALSE(gEngine);
    ASSERT_EQ(site.Window.Messages.size(), 1U);
    const platform::Message& message = site.Window.Messages.front();
    EXPECT_EQ(message.Title, "EpcError");
    EXPECT_EQ(message.Text, "You are missing file: " + site.InTemp("kSWCatalog.ini").string() +
                                "    Are you running Kestrel Workstation?");
    EXPECT_TRUE(message.SystemModal);
}

TEST(SiteConfiguration, ACustomerNumberThatIsNoneIsRaised) {
    test::SiteBuilder site;
    site.Ini = "[iQ-Stock]\nServer=SRV1\nCustomerNumber=abc\n";
    site.Write();
    EXPECT_EQ(test::ErrorOf([&] { LoadSiteConfiguration(false, site.Window); }).Number, 13);
    EXPECT_FALSE(gEngine);
}

TEST(SiteConfiguration, ExpandsEveryComponentToTheListedName) {
    test::SiteBuilder site;
    test::WriteBytes(site.InTemp("drive/Program Files/x"), "");
    const char separator = platform::PathSeparator;
    const std::string path = site.InTemp("drive/Program Files").make_preferred().string();
    EXPECT_EQ(ExpandLongPath(path), path);
    EXPECT_EQ(ExpandLongPath(path + separator), path + separator + ".");
    if (separator != '/') return;  // the system itself has drives
    EXPECT_EQ(ExpandLongPath("/"), "/.");
    const test::ScopedVariable config("XDG_CONFIG_HOME", site.InTemp("config").string());
    test::WriteBytes(site.InTemp("config/Vantora.conf"),
                     "[Drives]\nC=" + site.InTemp("drive").string() + "\n");
    EXPECT_EQ(ExpandLongPath("C:/PROGRAM FILES/X"), "C:/Program Files/x");
}

TEST(StartUp, AnUnreachableShareIsToldAndLeavesNoEngine) {
    test::SiteBuilder site;
    site.Ini = "[iQ-Stock]\nServer=SRV9\n";
    site.Write();
    LoadSiteConfiguration(false, site.Window);
    EXPECT_FALSE(gEngine);
    ASSERT_EQ(site.Window.Messages.size(), 1U);
    EXPECT_EQ(site.Window.Messages[0].Title, "Connection Error");
    EXPECT_EQ(
        site.Window.Messages[0].Text,
        R"(You are attempting to connect to: \\SRV9\KSTLLNK\ and this shows to be an invalid network share)");
    const auto error = test::ErrorOf([&] { cBusinessBasic engine(site.Window); });
    EXPECT_EQ(error.Number, 91);
    EXPECT_EQ(error.Source + error.Description, "");

    // A section of another name gives no server, and no share of none answers.
    site.Ini = "[iQ-Stocks]\nServer=SRV1\n";
    EXPECT_THROW(site.Start(), std::runtime_error);
    EXPECT_EQ(gEpcInfo->CatalogShare, R"(\\\\)");
}

TEST(StartUp, AMissingTerminalMapIsRecordedAndLeavesNoEngine) {
    test::SiteBuilder site;
    site.TerminalMap.reset();
    site.Write();
    LoadSiteConfiguration(false, site.Window);
    EXPECT_FALSE(gEngine);
    EXPECT_TRUE(site.Window.Messages.empty());
    ASSERT_TRUE(LastRecordedError());
    EXPECT_EQ(LastRecordedError()->Number, -10);
    EXPECT_EQ(LastRecordedError()->Source, "kSWDataEngine_Initialization");
    EXPECT_EQ(LastRecordedError()->Description,
              R"(Terminal File 'ttymap' not found on drive \\SRV1\KSTLLNK)");
    EXPECT_EQ(test::ErrorOf([&] { cBusinessBasic engine(site.Window); }).Number, 91);
}

TEST(StartUp, TakesTheTerminalOfThisWorkstation) {
    test::SiteBuilder site;
    site.TerminalMap =
        "\r\nother 1\r\n" + platform::ComputerName() + " 7,3\r\n" + platform::ComputerName() + " 8\r\n";
    site.Start();
    EXPECT_EQ(gSystem->TerminalID, "7");
    EXPECT_EQ(gEngine->Sys(4), 7);
}

TEST(StartUp, FindTerminal) {
    const struct {
        std::vector<std::string> Lines;
        std::optional<ByteString> Terminal;
    } cases[]{
        {{"WS12 7,3"}, "7"},   {{"ws12 7,3"}, "7"},
        {{"10.0.0.5 9"}, "9"}, {{"10.0.0.05 9"}, std::nullopt},
        {{"WS12  7"}, ""},     {{"WS12 ,7"}, ""},
        {{"WS12 7 8"}, "7"},   {{"WS12", "WS123 1", " WS12 2", "WS12 3", "WS12 4"}, "3"},
        {{}, std::nullopt},    {{"WS12.else 1", "ws12.SITE.example 5"}, "5"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(FindTerminal(c.Lines, {"WS12", "ws12.site.example"}, "10.0.0.5"), c.Terminal);
}

TEST(Links, AMissingLinkFileIsCreatedEmpty) {
    test::SiteBuilder site;
    site.Links.reset();
    site.Start();
    EXPECT_EQ(gLinks->Count(), 0);
    EXPECT_EQ(std::filesystem::file_size(site.InShare("LINKSFILE")), 0U);
}

TEST(Links, ALinkFileThatCannotBeOpenedEndsTheStart) {
    test::SiteBuilder site;
    site.Links.reset();
    std::filesystem::create_directories(site.InShare("LINKSFILE"));
    site.Write();
    LoadSiteConfiguration(false, site.Window);
    EXPECT_FALSE(gEngine);
    EXPECT_EQ(test::ErrorOf([&] { cBusinessBasic engine(site.Window); }).Number, 75);
}

TEST(EngineLife, ItsEndClosesFilesAndReleasesTheSite) {
    test::SiteBuilder site;
    site.AddFile("PLAIN", 'L', 100, 5, test::Nul(600));
    const auto file = site.Start().LogicalOpen("PLAIN");
    gEngine.reset();
    EXPECT_FALSE(gSystem);
    EXPECT_FALSE(gOpenFiles);
    EXPECT_EQ(test::ErrorOf([&] { file->ActiveCount(); }).Number, 52);
    ByteString path = R"(\\SRV1\KSTLLNK\DATA)";
    EXPECT_EQ(test::ErrorOf([&] { cBusinessBasic engine(site.Window); }).Number, 91);
    EXPECT_EQ(test::ErrorOf([&] { iLogicalOpen("PLAIN"); }).Number, 91);
    EXPECT_EQ(test::ErrorOf([&] { iOpenFile(path); }).Number, 91);
}

TEST(EngineLife, LoadingAgainReplacesTheEngine) {
    test::SiteBuilder site;
    site.Start();
    gCodeChars = "abc";
    site.Start();
    EXPECT_EQ(gSystem->mUNCDrive, "SRV1");
    EXPECT_EQ(gCodeChars, StandardCodeChars);
}

}  // namespace
}  // namespace engine
