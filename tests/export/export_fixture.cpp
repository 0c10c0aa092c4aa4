#include "tests/export/export_fixture.h"

#include "catalogue/metadata_catalogue.h"
#include "export/export_run.h"

namespace test {

void ExportFixture::Export(const std::u16string& table) {
    Caption(table);
    catalogue::EmptyTableFiles(State);
    catalogue::OpenFiles(State, List, Window, 0);
    catalogue::BuildCollection(State, List, 0);
    exporting::AddData(State, List, Window, 0);
}

std::vector<std::string> ExportFixture::RowsOfTarget(const std::u16string& table) {
    State.TargetDatabase->Close();
    return RowsOf(TargetFile, table);
}

}  // namespace test
