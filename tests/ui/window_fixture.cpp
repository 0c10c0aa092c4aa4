#include "tests/ui/window_fixture.h"

#include <QCheckBox>
#include <QFile>
#include <QFileDialog>
#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "platform/dao/database.h"
#include "tools/sample_site/sample_site.h"

using namespace Qt::Literals::StringLiterals;

namespace test {

namespace {

constexpr std::int64_t SiteRecords = 300;

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Buttons& buttons) {
    return stream << buttons.SelectDatabase << buttons.Update << buttons.CancelUpdate;
}

WindowFixture::WindowFixture()
    : mTemp("TMPDIR", (SiteFolder / "tmp").string()),
      mSettings("XDG_CONFIG_HOME", (SiteFolder / "config").string()) {
    sample::WriteSampleSite(SiteFolder, {.Records = SiteRecords});
}

WindowFixture::~WindowFixture() {
    EXPECT_TRUE(Robot.IsDone()) << "a dialog that the test prepared for did not open";
}

void WindowFixture::Start() {
    Window = std::make_unique<ui::fInterface>();
    ASSERT_TRUE(Window->Form_Load());
}

void WindowFixture::StartShown() {
    Start();
    Window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Window.get()));
}

QString WindowFixture::Text(const QString& textBox) const {
    return Find<QLineEdit>(textBox).text();
}

QPushButton& WindowFixture::Button(int index) const {
    return Find<QPushButton>(u"btnAction(%1)"_s.arg(index));
}

Buttons WindowFixture::ButtonStates() const {
    return {Button(0).isEnabled(), Button(1).isEnabled(), Button(2).isEnabled()};
}

void WindowFixture::Press(int button) {
    QTest::mouseClick(&Button(button), Qt::LeftButton);
}

std::vector<QCheckBox*> WindowFixture::ListedBoxes() const {
    std::vector<QCheckBox*> listed;
    for (QCheckBox* const box : Window->findChildren<QCheckBox*>()) {
        if (!box->isHidden()) listed.push_back(box);
    }
    return listed;
}

QCheckBox& WindowFixture::Box(const QString& table) const {
    for (QCheckBox* const box : ListedBoxes()) {
        if (box->text() == table) return *box;
    }
    throw std::invalid_argument("no table " + table.toStdString());
}

void WindowFixture::Tick(const QString& table) {
    if (IsKeyed(table)) Robot.Expect(PressOk);
    QCheckBox& box = Box(table);
    QTest::mouseClick(&box, Qt::LeftButton, {}, QPoint(box.height() / 2, box.height() / 2));
}

void WindowFixture::TickAll() {
    for (const QCheckBox* const box : ListedBoxes()) Tick(box->text());
}

void WindowFixture::SelectDatabase(const std::filesystem::path& file) {
    Robot.Expect([&file](QWidget& dialog) { Choose(dialog, file); });
    Press(0);
}

void WindowFixture::Choose(QWidget& dialog, const std::filesystem::path& file) {
    auto* const name = dialog.findChild<QLineEdit*>();
    QTest::keyClicks(name, QString::fromStdString(file.string()));
    QTest::keyClick(name, Qt::Key_Return);
}

void WindowFixture::Cancel(QWidget& dialog) {
    QTest::keyClick(&dialog, Qt::Key_Escape);
}

void WindowFixture::PressOk(QWidget& dialog) {
    QTest::mouseClick(dialog.findChild<QPushButton*>(u"b_OK"_s), Qt::LeftButton);
}

QJsonArray WindowFixture::Tables() const {
    QFile file(QString::fromStdString((SiteFolder / "manifest.json").string()));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QJsonDocument::fromJson(file.readAll())[u"tables"].toArray();
}

std::map<std::string, int> WindowFixture::ExpectedRows() const {
    std::map<std::string, int> rows;
    for (const auto& table : Tables()) {
        rows[table[u"name"].toString().toStdString()] = table[u"expectedRows"].toInt(-1);
    }
    return rows;
}

bool WindowFixture::IsKeyed(const QString& table) const {
    for (const auto& each : Tables()) {
        if (each[u"name"].toString() == table) return each.toObject().contains(u"keyFile"_s);
    }
    throw std::invalid_argument("the manifest has no table " + table.toStdString());
}

std::map<std::string, int> WindowFixture::RowsIn(const std::filesystem::path& file) const {
    std::map<std::string, int> rows;
    const auto database = dao::OpenDatabase(file.string());
    for (const QCheckBox* const box : ListedBoxes()) {
        const auto table = database->OpenRecordset(box->text().toStdU16String());
        rows[box->text().toStdString()] = table->RecordCount();
    }
    return rows;
}

}  // namespace test
