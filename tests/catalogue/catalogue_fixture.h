// Tests of the catalogue and of the export: a settings store, a catalogue and a site of their own.
#pragma once

#include <gtest/gtest.h>
#include <memory>
#include <string>

#include "catalogue/interface_state.h"
#include "tests/catalogue/catalogue_builder.h"
#include "tests/catalogue/scripted_window.h"
#include "tests/catalogue/site_files.h"
#include "tests/catalogue/table_list_fake.h"
#include "tests/support/scratch.h"

namespace test {

class CatalogueFixture : public testing::Test {
  protected:
    CatalogueFixture();

    /// Writes the catalogue to its place and starts on it, as the window does.
    void StartCatalogue();

    /// Writes the site and starts the engine on it.
    void StartEngine();

    /// The same, and creates the target database.
    void StartWithTarget();

    /// Gives box 0 this caption.
    void Caption(const std::u16string& tableName) { List.SetCaption(0, tableName); }

    /// All rows of a table of the closed database at file, each column as Shown, joined by "|".
    static std::vector<std::string> RowsOf(const std::filesystem::path& file, const std::u16string& table);

    ScratchFolder Scratch;
    const std::filesystem::path CatalogueFile = Scratch / "home" / "MasterFileInformation.mdb";
    const std::filesystem::path TargetFile = Scratch / "target.mdb";

    catalogue::InterfaceState State;
    TableListFake List;
    ScriptedWindow Window;
    SiteFiles Site;
    std::unique_ptr<CatalogueBuilder> Catalogue;

  private:
    ScopedVariable mSettings;
    std::unique_ptr<RunningEngine> mEngine;
};

/// A value as tests write it: Null is "-", dates are their serial, amounts have four decimals.
std::string Shown(const dao::Value& value);

}  // namespace test
