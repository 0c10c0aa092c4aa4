// The main window on a made-up site, worked by mouse and keys.
#pragma once

#include <QJsonObject>
#include <QMetaType>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "tests/support/scratch.h"
#include "tests/ui/modal_robot.h"
#include "ui/interface_window.h"

class QCheckBox;
class QPushButton;

namespace test {

/// The three action buttons: Select DB, Update, Cancel Update.
struct Buttons {
    bool SelectDatabase;
    bool Update;
    bool CancelUpdate;
    bool operator==(const Buttons&) const = default;
};
std::ostream& operator<<(std::ostream& stream, const Buttons& buttons);

class WindowFixture : public testing::Test {
  protected:
    WindowFixture();
    ~WindowFixture() override;

    /// Writes the site and brings the window through its start-up.
    void Start();
    void StartShown();

    /// A control by the system's name for it.
    template <typename Control>
    Control& Find(const QString& name) const {
        auto* const control = Window->findChild<Control*>(name);
        if (control == nullptr) throw std::invalid_argument("no control " + name.toStdString());
        return *control;
    }

    QString Text(const QString& textBox) const;
    Buttons ButtonStates() const;
    QPushButton& Button(int index) const;
    void Press(int button);

    /// The check box of a table.
    QCheckBox& Box(const QString& table) const;
    std::vector<QCheckBox*> ListedBoxes() const;

    /// Clicks a table's box and answers the range dialog, if the table has one, by its OK button.
    void Tick(const QString& table);
    void TickAll();

    /// Presses Select DB and chooses file.
    void SelectDatabase(const std::filesystem::path& file);

    /// Answers to the save dialog.
    static void Choose(QWidget& dialog, const std::filesystem::path& file);
    static void Cancel(QWidget& dialog);

    /// Answer to the range dialog.
    static void PressOk(QWidget& dialog);

    /// Rows of every listed table of a closed database.
    std::map<std::string, int> RowsIn(const std::filesystem::path& file) const;

    /// What the site says that a full export gives.
    std::map<std::string, int> ExpectedRows() const;
    bool IsKeyed(const QString& table) const;

    ScratchFolder Scratch;
    const std::filesystem::path SiteFolder = Scratch / "site";
    const std::filesystem::path Target = Scratch / "target.mdb";
    ModalRobot Robot;
    std::unique_ptr<ui::fInterface> Window;

  private:
    QJsonArray Tables() const;

    ScopedVariable mTemp;
    ScopedVariable mSettings;
};

}  // namespace test
