// Exports one table of a small site into a fresh target database, as an update does.
#pragma once

#include <string>
#include <vector>

#include "tests/catalogue/catalogue_fixture.h"

namespace test {

class ExportFixture : public CatalogueFixture {
  protected:
    /// Opens the table's files, collects its fields and runs the export of box 0.
    void Export(const std::u16string& table);

    /// Closes the target database and reads a table of it.
    std::vector<std::string> RowsOfTarget(const std::u16string& table);

    std::string LastStatus() const { return Window.LastStatus(); }
};

}  // namespace test
