// The main window on a made-up site, worked by mouse and keys.
#pragma once

#include <QString>
#include <gtest/gtest.h>
#include <map>
#include <memory>
#include <string>

#include "tests/support/scratch.h"
#include "tools/window_driver/window_driver.h"
#include "ui/interface_window.h"

namespace test {

using driver::ModalRobot;
using driver::WindowDriver;

class WindowFixture : public testing::Test {
  protected:
    WindowFixture();
    ~WindowFixture() override { EXPECT_TRUE(Robot.IsDone()) << "an expected dialog did not open"; }

    /// Brings the window through its start-up and shows it.
    void Start();

    QString Text(const QString& textBox) const;

    /// The enabled ones of the three actions, such as "Select DB, Update".
    std::string EnabledActions() const;
    bool AnyBoxIsEnabledOrTicked() const;

    QString Path(const char* name) const { return QString::fromStdString((Scratch / name).string()); }

    /// Rows of every listed table of a closed database, and what the site says that a full export gives.
    std::map<std::string, int> RowsIn(const QString& file) const;
    std::map<std::string, int> ExpectedRows() const;

    ScratchFolder Scratch;
    const std::filesystem::path SiteFolder = Scratch / "site";
    const QString Target = Path("target.mdb");
    ModalRobot Robot;
    std::unique_ptr<ui::fInterface> Window;
    std::unique_ptr<WindowDriver> Hands;

  private:
    ScopedVariable mTemp;
    ScopedVariable mSettings;
};

}  // namespace test
