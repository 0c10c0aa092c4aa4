#include "tests/catalogue/catalogue_fixture.h"

#include <iomanip>
#include <sstream>
#include <type_traits>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/target_builder.h"
#include "platform/code_page.h"

namespace test {

CatalogueFixture::CatalogueFixture() : mSettings("XDG_CONFIG_HOME", (Scratch / "settings").string()) {
    WriteBytes(Scratch / "settings" / "Vantora.conf",
               "[Directory]\nHome=" + CatalogueFile.parent_path().string() +
                   "\n[Shares]\nRoot=" + (Scratch / "shares").string() + "\n");
    std::filesystem::create_directories(CatalogueFile.parent_path());
    Catalogue = std::make_unique<CatalogueBuilder>(CatalogueFile);
}

void CatalogueFixture::StartCatalogue() {
    Catalogue.reset();
    catalogue::StartCatalogue(State, List);
}

void CatalogueFixture::StartEngine() {
    Site.Write(Scratch / "shares");
    mEngine = std::make_unique<RunningEngine>(Window);
}

void CatalogueFixture::StartWithTarget() {
    StartEngine();
    StartCatalogue();
    catalogue::BuildTargetDatabase(State, TargetFile.string());
}

std::vector<std::string> CatalogueFixture::RowsOf(const std::filesystem::path& file,
                                                  const std::u16string& table) {
    const auto database = dao::OpenDatabase(file.string());
    const auto rows = database->OpenRecordset(table);
    std::vector<std::string> shown;
    while (!rows->AtEnd()) {
        std::string line;
        for (int column = 0; column < rows->FieldCount(); ++column) {
            line += (column == 0 ? "" : "|") + Shown(rows->Fields(column).GetValue());
        }
        shown.push_back(line);
        rows->MoveNext();
    }
    database->Close();
    return shown;
}

std::string Shown(const dao::Value& value) {
    return std::visit(
        [](const auto& held) -> std::string {
            using Held = std::decay_t<decltype(held)>;
            std::ostringstream text;
            if constexpr (std::is_same_v<Held, dao::Null>) text << "-";
            if constexpr (std::is_same_v<Held, bool>) text << (held ? "yes" : "no");
            if constexpr (std::is_same_v<Held, std::int32_t> || std::is_same_v<Held, double>) text << held;
            if constexpr (std::is_same_v<Held, dao::Currency>) {
                text << std::fixed << std::setprecision(4) << static_cast<double>(held.Scaled) / 10000;
            }
            if constexpr (std::is_same_v<Held, platform::OleDate>) text << held.Serial;
            if constexpr (std::is_same_v<Held, std::u16string>) text << platform::Utf8FromWide(held);
            return text.str();
        },
        value);
}

}  // namespace test
