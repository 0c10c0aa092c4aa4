#include "tests/ui/window_fixture.h"

#include <QCheckBox>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "platform/dao/database.h"
#include "tools/sample_site/sample_site.h"

using namespace Qt::Literals::StringLiterals;

namespace test {

WindowFixture::WindowFixture()
    : mTemp("TMPDIR", (SiteFolder / "tmp").string()),
      mSettings("XDG_CONFIG_HOME", (SiteFolder / "config").string()) {
    sample::WriteSampleSite(SiteFolder, {.Records = 300});
}

void WindowFixture::Start() {
    Window = std::make_unique<ui::fInterface>();
    ASSERT_TRUE(Window->Form_Load());
    Window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(Window.get()));
    Hands = std::make_unique<WindowDriver>(*Window, Robot);
}

QString WindowFixture::Text(const QString& textBox) const {
    return Hands->Find<QLineEdit>(textBox).text();
}

std::string WindowFixture::EnabledActions() const {
    QStringList enabled;
    for (const auto action : {WindowDriver::SelectDb, WindowDriver::Update, WindowDriver::CancelUpdate}) {
        if (Hands->Button(action).isEnabled()) enabled << Hands->Button(action).text();
    }
    return enabled.join(u", "_s).toStdString();
}

bool WindowFixture::AnyBoxIsEnabledOrTicked() const {
    const auto boxes = Hands->ListedBoxes();
    return std::any_of(boxes.begin(), boxes.end(),
                       [](const QCheckBox* box) { return box->isEnabled() || box->isChecked(); });
}

std::map<std::string, int> WindowFixture::ExpectedRows() const {
    QFile file(Path("site/manifest.json"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    std::map<std::string, int> rows;
    for (const auto& table : QJsonDocument::fromJson(file.readAll())[u"tables"].toArray()) {
        rows[table[u"name"].toString().toStdString()] = table[u"expectedRows"].toInt(-1);
    }
    return rows;
}

std::map<std::string, int> WindowFixture::RowsIn(const QString& file) const {
    std::map<std::string, int> rows;
    const auto database = dao::OpenDatabase(file.toStdString());
    for (const QCheckBox* const box : Hands->ListedBoxes()) {
        const auto table = database->OpenRecordset(box->text().toStdU16String());
        rows[box->text().toStdString()] = table->RecordCount();
    }
    return rows;
}

}  // namespace test
