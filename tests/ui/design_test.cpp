#include <QApplication>
#include <QCheckBox>
#include <QTest>
#include <gtest/gtest.h>

#include "ui/interface_window.h"
#include "ui/readable_colours.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// The window as it is laid out, with all boxes shown. Start-up has not run.
class Design : public testing::Test {
  protected:
    Design() {
        for (QCheckBox* const box : Window.findChildren<QCheckBox*>()) box->setText(Longest);
        Window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&Window));
    }

    /// A control's place in the window's client area below the menus.
    QRect Place(const QString& name) const {
        const auto* const control = Window.findChild<QWidget*>(name);
        if (control == nullptr) return {};
        return {control->mapTo(Window.centralWidget(), QPoint(0, 0)), control->size()};
    }

    const QString Longest = u"INVOICE_HISTORY_DETAIL"_s;
    ui::fInterface Window;
};

TEST_F(Design, ControlsStandAtTheirTwips) {
    const struct {
        const char16_t* Name;
        int Left, Top, Width, Height;  // twips
    } cases[] = {
        {u"Label1", 705, 180, 6600, 255},         {u"txtDataBase", 690, 495, 6615, 375},
        {u"btnAction(0)", 7575, 255, 1575, 615},  {u"btnAction(1)", 9495, 240, 1575, 615},
        {u"btnAction(2)", 11385, 240, 1575, 615}, {u"fSelections", 705, 915, 12600, 7095},
        {u"txtStatus", 690, 8160, 12240, 375},
    };
    for (const auto& each : cases) {
        EXPECT_EQ(Place(QString::fromUtf16(each.Name)),
                  QRect(each.Left / 15, each.Top / 15, each.Width / 15, each.Height / 15))
            << qPrintable(QString::fromUtf16(each.Name));
    }
}

TEST_F(Design, TheBoxesFormFourColumnsOfNineteen) {
    const int columnLefts[] = {120, 2880, 5880, 8880};
    const QPoint frame = Place(u"fSelections"_s).topLeft();
    for (int i = 0; i < 76; ++i) {
        const QRect place = Place(u"x_SelectedTable(%1)"_s.arg(i));
        EXPECT_EQ(place.topLeft() - frame, QPoint(columnLefts[i / 19] / 15, (240 + 360 * (i % 19)) / 15))
            << i;
        EXPECT_EQ(place.width(), 2775 / 15) << i;
    }
}

TEST_F(Design, TextsAreTheSystemsOwn) {
    const struct {
        const char *Name, *Property, *Text;
    } cases[] = {
        {"Label1", "text", "Target Database"},
        {"btnAction(0)", "text", "Select DB"},
        {"btnAction(1)", "text", "Update"},
        {"btnAction(2)", "text", "Cancel Update"},
        {"fSelections", "title", "Select File to Export"},
        {"fSelections", "toolTip", "Show Available tables when a DataBase is open."},
        {"mnuFile", "title", "&File"},
        {"mnuExit", "text", "Close"},
        {"mnuOptions", "title", "&Options"},
        {"mnuEnforceReferentialIntegrity", "text", "Enforce Referential Integrity"},
        {"mnuEnforceReferentialIntegrity", "checked", "false"},
    };
    for (const auto& each : cases) {
        const auto* const control = Window.findChild<QObject*>(QString::fromLatin1(each.Name));
        ASSERT_NE(control, nullptr) << each.Name;
        EXPECT_EQ(control->property(each.Property).toString().toStdString(), each.Text) << each.Name;
    }
}

TEST_F(Design, TabGoesThroughTheControlsAsTheEyeDoes) {
    QStringList expected{u"btnAction(0)"_s, u"btnAction(1)"_s, u"btnAction(2)"_s};
    for (int i = 0; i < 76; ++i) expected << u"x_SelectedTable(%1)"_s.arg(i);
    expected << u"txtStatus"_s << u"txtDataBase"_s;
    Window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&Window));
    QStringList passed;
    while (passed.size() < expected.size()) {
        passed << Window.focusWidget()->objectName();
        QTest::keyClick(Window.focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(passed, expected);
}

// The window is there before the desktop changes. The green is given: on a light ground it has 4.47.
TEST_F(Design, TextsCanBeReadOnLightAndDarkDesktops) {
    EXPECT_DOUBLE_EQ(ui::Contrast(Qt::black, Qt::white), 21);
    const auto boxes = Window.findChildren<ui::TableBox*>();
    boxes[1]->SetColour(catalogue::TableColour::Green);
    boxes[2]->SetColour(catalogue::TableColour::Purple);
    const QPalette before = QApplication::palette();
    for (const QColor ground : {QColor(45, 45, 48), QColor(240, 240, 240)}) {
        QApplication::setPalette(QPalette(ground));
        QApplication::processEvents();
        EXPECT_EQ(Window.palette().color(QPalette::Window), ground);
        for (const auto& [group, least] : {std::pair(QPalette::Active, 4.4), {QPalette::Disabled, 3.0}}) {
            for (const QWidget* const control : Window.centralWidget()->findChildren<QWidget*>()) {
                const QColor behind = Window.palette().color(group, control->backgroundRole());
                EXPECT_GE(ui::Contrast(control->palette().color(group, control->foregroundRole()), behind),
                          least)
                    << qPrintable(control->objectName()) << " on " << qPrintable(ground.name());
            }
        }
    }
    QApplication::setPalette(before);
}

/// All controls of a window that opens with an application font of this size.
void ExpectNothingCutOff(double points) {
    const QFont before = QApplication::font();
    QFont larger = before;
    larger.setPointSizeF(points);
    QApplication::setFont(larger);
    {
        ui::fInterface window;
        for (QCheckBox* const box : window.findChildren<QCheckBox*>()) box->setText(u"WARRANTY_CLAIMS"_s);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        for (const QWidget* const control : window.centralWidget()->findChildren<QWidget*>()) {
            if (control->objectName().isEmpty()) continue;
            EXPECT_GE(control->width(), control->minimumSizeHint().width())
                << qPrintable(control->objectName()) << " at " << points;
            EXPECT_GE(control->height(), control->minimumSizeHint().height())
                << qPrintable(control->objectName()) << " at " << points;
        }
        const auto* const first = window.findChild<QWidget*>(u"x_SelectedTable(0)"_s);
        const auto* const second = window.findChild<QWidget*>(u"x_SelectedTable(1)"_s);
        EXPECT_LE(first->geometry().bottom(), second->geometry().top()) << points;
    }
    QApplication::setFont(before);
}

TEST(DesignFonts, LargerFontsCutNothingOff) {
    for (const double points : {9.0, 13.5, 27.0}) ExpectNothingCutOff(points);
}

}  // namespace
