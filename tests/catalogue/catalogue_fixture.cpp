#include "tests/catalogue/catalogue_fixture.h"

#include <iomanip>
#include <sstream>
#include <type_traits>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/target_builder.h"
#include "engine/built_ins.h"
#include "platform/code_page.h"

namespace test {

CatalogueFixture::CatalogueFixture() {
    std::filesystem::create_directories(CatalogueFile.parent_path());
    Site.Folder().SetHome(CatalogueFile.parent_path());
    Catalogue = std::make_unique<CatalogueBuilder>(CatalogueFile);
}

CatalogueFixture::~CatalogueFixture() {
    engine::gCodeChars = engine::StandardCodeChars;
}

void CatalogueFixture::AddRecords(const std::string& name, const std::vector<ByteString>& records) {
    const std::size_t length = records.empty() ? 16 : records.front().size();
    const auto count = static_cast<std::int32_t>(records.size());
    std::string content = Padded(Big(-2, 2) + Big(-1, 4) + Big(count, 4) + Big(count, 4), length, '\0');
    for (const ByteString& record : records) content += record;
    Site.AddFile(name, 'L', static_cast<std::int32_t>(length), count, content);
}

void CatalogueFixture::AddIndex(const std::string& name, std::vector<KeyAndPointer> entries) {
    const IndexFormat format{.KeyLength = static_cast<std::int32_t>(entries.front().Key.size())};
    entries.push_back(Terminator(format));
    const std::string leaf = BlockBytes(format, format.LastLeaf(), entries);
    Site.AddFile(name, 'I', 512, 1, HeaderBytes(format, 1) + leaf);
}

void CatalogueFixture::StartCatalogue() {
    Catalogue.reset();
    catalogue::StartCatalogue(State, List);
}

void CatalogueFixture::StartEngine() {
    Site.Start();
    engine::gCodeChars.replace(0, 4, " ,-.");
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
            if (column > 0) line += '|';
            line += Shown(rows->Fields(column).GetValue());
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
