// Tests of the catalogue and of the export: a settings store, a catalogue and a site of their own.
#pragma once

#include <cstdint>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/interface_state.h"
#include "tests/catalogue/catalogue_builder.h"
#include "tests/catalogue/scripted_window.h"
#include "tests/catalogue/table_list_fake.h"
#include "tests/engine/index_builder.h"
#include "tests/engine/site_builder.h"
#include "tests/support/scratch.h"

namespace test {

using platform::ByteString;

/// Bytes out of a literal that may hold NULs.
template <std::size_t Length>
ByteString Bytes(const char (&literal)[Length]) {
    return ByteString(literal, Length - 1);
}

class CatalogueFixture : public testing::Test {
  protected:
    CatalogueFixture();
    ~CatalogueFixture() override;

    /// Adds records 1 to n of a file to the site; they are of one length, at least 16.
    void AddRecords(const std::string& name, const std::vector<ByteString>& records);

    /// Adds a keyed file of one leaf to the site: entries in key order, all keys of one length.
    void AddIndex(const std::string& name, std::vector<KeyAndPointer> entries);

    /// Writes the catalogue to its place and starts on it, as the window does.
    void StartCatalogue();

    /// Writes the site and starts the engine on it.
    void StartEngine();

    /// Both, and creates the target database.
    void StartWithTarget();

    /// Gives box 0 this caption.
    void Caption(const std::u16string& tableName) { List.SetCaption(0, tableName); }

    /// All rows of a table of the closed database at file, each column as Shown, joined by "|".
    static std::vector<std::string> RowsOf(const std::filesystem::path& file, const std::u16string& table);

    ScratchFolder Scratch;
    const std::filesystem::path CatalogueFile = Scratch / "home" / "MasterFileInformation.mdb";
    const std::filesystem::path TargetFile = Scratch / "target.mdb";

    SiteBuilder Site;
    catalogue::InterfaceState State;
    TableListFake List;
    ScriptedWindow Window;
    std::unique_ptr<CatalogueBuilder> Catalogue;
};

/// A value as tests write it: Null is "-", dates are their serial, amounts have four decimals.
std::string Shown(const dao::Value& value);

}  // namespace test
