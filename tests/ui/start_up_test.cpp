#include <QAction>
#include <QCheckBox>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QTest>
#include <algorithm>

#include "engine/system.h"
#include "platform/code_page.h"
#include "platform/site.h"
#include "tests/ui/window_fixture.h"
#include "ui/window_texts.h"

using namespace Qt::Literals::StringLiterals;

namespace {

using test::Buttons;

class StartUp : public test::WindowFixture {};

TEST_F(StartUp, OnlySelectDbCanBePressed) {
    Start();
    EXPECT_EQ(ButtonStates(), (Buttons{true, false, false}));
    EXPECT_EQ(Text(u"txtDataBase"_s), QString());
    EXPECT_EQ(Text(u"txtStatus"_s), QString());
}

TEST_F(StartUp, TheListShowsTheCataloguesTablesButCannotBeTicked) {
    Start();
    std::map<std::string, int> listed;
    for (const QCheckBox* const box : ListedBoxes()) {
        EXPECT_FALSE(box->isEnabled());
        EXPECT_EQ(box->checkState(), Qt::Unchecked);
        listed[box->text().toStdString()] = ExpectedRows()[box->text().toStdString()];
    }
    EXPECT_EQ(listed, ExpectedRows());
    EXPECT_EQ(Window->findChildren<QCheckBox*>().size(), 76);
}

TEST_F(StartUp, ATablesColourTellsItsLevel) {
    Start();
    const auto colourOf = [this](const QString& table) {
        return Box(table).palette().color(QPalette::Active, QPalette::WindowText);
    };
    EXPECT_EQ(colourOf(u"CUSTOMERS"_s), Window->palette().color(QPalette::WindowText));
    EXPECT_EQ(colourOf(u"INVOICE_HISTORY"_s), QColor(0, 128, 0));
    EXPECT_EQ(colourOf(u"INVOICE_HISTORY_DETAIL"_s), QColor(128, 0, 128));
}

TEST_F(StartUp, TheCaptionEndsInTheVersion) {
    Start();
    EXPECT_EQ(Window->windowTitle(), u"Vantora Database Explorer     Version   1.00.0000"_s);
}

TEST_F(StartUp, TheStatusBarTellsTheSiteTheTimeAndTheDate) {
    Start();
    const auto panel = [this](int number) { return Find<QLabel>(u"sb1(%1)"_s.arg(number)).text(); };
    EXPECT_EQ(panel(1), u"Client :" + QString::fromStdString(platform::ComputerName()));
    EXPECT_EQ(panel(2), u"Host :SRV1"_s);
    EXPECT_EQ(panel(3), u"Terminal :47"_s);
    EXPECT_EQ(panel(4), u"Source :KSW0123      Store # 0123"_s);
    EXPECT_TRUE(QLocale().toTime(panel(5), QLocale::ShortFormat).isValid()) << qPrintable(panel(5));
    EXPECT_EQ(panel(6), QLocale().toString(QDate::currentDate(), QLocale::ShortFormat));
}

TEST_F(StartUp, TheTargetIsNotChosenYetAndTheInvoicesAreOpen) {
    Start();
    EXPECT_EQ(Window->State().TargetDatabase, nullptr);
    EXPECT_NE(Window->State().CatalogueDatabase, nullptr);
}

TEST_F(StartUp, TheEnforceEntryTogglesItsTickAndNothingElse) {
    Start();
    auto& entry = Find<QAction>(u"mnuEnforceReferentialIntegrity"_s);
    EXPECT_FALSE(entry.isChecked());
    for (const bool ticked : {true, false}) {
        entry.trigger();
        EXPECT_EQ(entry.isChecked(), ticked);
        EXPECT_EQ(Window->State().EnforceReferentialIntegrity, ticked);
        EXPECT_EQ(ButtonStates(), (Buttons{true, false, false}));
    }
}

TEST_F(StartUp, CloseReleasesTheState) {
    StartShown();
    QTest::keyClick(Window.get(), Qt::Key_F, Qt::AltModifier);
    auto& file = Find<QMenu>(u"mnuFile"_s);
    EXPECT_TRUE(file.isVisible());
    QTest::keyClick(&file, Qt::Key_Down);
    QTest::keyClick(&file, Qt::Key_Return);
    EXPECT_FALSE(Window->isVisible());
    EXPECT_EQ(Window->State().CatalogueDatabase, nullptr);
    EXPECT_EQ(Window->State().IndexDefinitionRecordset, nullptr);
}

TEST(WindowTexts, TheVersionHasTwoAndFourDigitsAtLeast) {
    EXPECT_EQ(ui::VersionText(4, 2, 1), u"Version   4.02.0001"_s);
    EXPECT_EQ(ui::VersionText(12, 345, 67890), u"Version   12.345.67890"_s);
}

TEST(WindowTexts, TheStoreNumberFollowsThreeLetters) {
    const struct {
        const char* Directory;
        QString Panel;
    } cases[] = {{"KSW0123", u"Source :KSW0123      Store # 0123"_s},
                 {"KSW", u"Source :KSW      Store # "_s},
                 {"AB", u"Source :AB      Store # "_s},
                 {"", u"Source :      Store # "_s},
                 {"K\xDCW\xC4", u"Source :KÜWÄ      Store # Ä"_s}};
    for (const auto& each : cases) {
        engine::cSystem system;
        system.mDirectory = each.Directory;
        EXPECT_EQ(ui::SitePanelTexts(system)[3], each.Panel);
    }
}

TEST(WindowTexts, AnAmpersandIsShownAsItStands) {
    EXPECT_EQ(ui::WithoutAccessKey(u"A&B"_s), u"A&&B"_s);
}

}  // namespace
