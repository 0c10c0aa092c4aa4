// A catalogue of any contents: the whole way from its tables to a target database with rows. An input is
// lines, each a letter for the table and its columns in order between bars, and behind an empty line the
// bytes of the records that are copied.
#include <algorithm>
#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "catalogue/metadata_catalogue.h"
#include "catalogue/target_builder.h"
#include "engine/business_basic.h"
#include "engine/links.h"
#include "engine/site_configuration.h"
#include "export/export_run.h"
#include "export/key_range.h"
#include "platform/code_page.h"
#include "platform/silent_window.h"
#include "tests/catalogue/catalogue_builder.h"
#include "tests/catalogue/table_list_fake.h"
#include "tests/engine/index_builder.h"
#include "tests/export/history_record.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch_home.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t RecordLength = 292;
constexpr std::size_t MostRecords = 8;

struct CatalogueTable {
    char Letter;
    std::u16string_view Name;
    int NumberColumn;  // takes the line's number, so that rows keep their order; -1 for none
};
constexpr std::array Tables{
    CatalogueTable{'F', u"VantoraFileDefinitions", 1}, CatalogueTable{'M', u"LogicalMap", 11},
    CatalogueTable{'K', u"LogicalIndexDefinition", -1}, CatalogueTable{'I', u"LogicalIndex", 2}};

/// A table in key order, one by record number, and the two that are made up of other records.
constexpr std::string_view SoundCatalogue =
    "M|PARTS|Top Level|PARTX|PARTF||||PARTX|0|0|Id\nM|NOTES|Mid-Level||PARTF||||NONE|-9|99|\n"
    "M|INVOICE_HISTORY_DETAIL|Bottom Level|PARTX|PARTF||||PARTX|0|0|Id\n"
    "M|SUPERCEDES|Top Level|PARTX|||||PARTX|0|0|Id\n"
    "K|PARTX|Key of parts|U|0|999|2|0|0\n"
    "F|PARTS||Id|U|2|1|0\nF|PARTS||Flag|B|1|3|5\nF|PARTS||Name|A|20|4|0\nF|PARTS||Text|C|12|24|0\n"
    "F|PARTS||Day|D|2|36|0\nF|PARTS||Price|I|4|38|2\nF|PARTS||Short|L|2|42|0\nF|PARTS||Sum|M|4|44|0\n"
    "F|PARTS||Part|P|16|46|0\nF|PARTS||One|X|2|50|1\nF|PARTS||State|Y|40|20|0\nF|PARTS||Zip|Z|40|20|0\n"
    "F|PARTS||Big|A|300|1|0\nF|NOTES||Id|W|2|1|0\nF|NOTES||J|J|2|3|0\nF|NOTES||R|R|2|5|0\nF|NOTES||m|m|4|9|"
    "0\n"
    "F|INVOICE_HISTORY_DETAIL||Id|U|4|3|0\nF|INVOICE_HISTORY_DETAIL||Line|C|24|53|0\n"
    "F|SUPERCEDES||Id|U|2|1|0\nF|SUPERCEDES||Part|P|16|3|0\n"
    "I|PARTS|PrimaryKey||1|1|Id|0\nI|PARTS|Other||0|0|Name|1\nI|PARTS|Other||0|0|Day|0\n"
    "I|NOTES|Third||0|1|J|0\n\n";

/// The catalogue, and invoice records of two lines each.
std::string SoundInput(unsigned) {
    std::string input(SoundCatalogue);
    for (int i = 1; i <= static_cast<int>(MostRecords); ++i) {
        test::HistoryRecord record{
            .Link = i, .Invoice = 100 + i, .Description = "TEXT", .Length = RecordLength};
        record.Lines = {test::InvoiceLine("REM", "x"), test::InvoiceLine("PRT", test::Nul(8))};
        input += test::With(record.Bytes(), 1, test::Big(i * 3, 2));
    }
    return input;
}

/// What a column may hold that somebody has to think of.
constexpr std::array Odd{"",       "0",          "-1",          "1",     "255",       "256",   "32767",
                         "-32768", "2147483647", "-2147483648", "1.5",   "1e30",      "PARTX", "PARTF",
                         "NONE",   "O'Brien",    "' Or 'a'='a", "[x]",   "a.b!c",     "U",     "I",
                         "C",      "B",          "P",           "parts", "Select * x"};

/// The site of all inputs: two files, whose records are written anew for each.
struct Site : test::ScratchHome {
    Site() {
        Write("tmp/kSWCatalog.ini", "[iQ-Stock]\nServer=SRV1\nDirectory=D01\n");
        Write("root/SRV1/KSTLLNK/ttymap", "");
        Write("root/SRV1/KSTLLNK/LINKSFILE",
              test::LinkEntry(":D01:PARTX", "KSW:D01") + test::LinkEntry(":D01:PARTF", "KSW:D01"));
        Write("root/SRV1/KSTLLNK/KSW/D01",
              test::DirectoryEntryBytes("PARTX", 1, 512, 'I', 1) +
                  test::DirectoryEntryBytes("PARTF", 3, RecordLength, 'L', MostRecords));
        const std::string settings = "[Directory]\nHome=" + (*this / "home").string() + "\n";
        WriteSettings(settings);
        fs::create_directories(*this / "home");
        { const test::CatalogueBuilder builder(*this / "empty.mdb"); }
    }

    void WriteRecords(std::string_view bytes) const {
        const test::IndexFormat format{.KeyLength = 2};
        std::vector<test::KeyAndPointer> entries;
        for (std::size_t i = 1; i <= MostRecords; ++i)
            entries.push_back({test::Big(static_cast<std::int64_t>(i * 3), 2), static_cast<std::int32_t>(i)});
        entries.push_back(test::Terminator(format));
        std::string records = test::Padded(
            test::Big(-2, 2) + test::Big(-1, 4) + test::Big(MostRecords, 4) + test::Big(MostRecords, 4),
            RecordLength, '\0');
        records += bytes.substr(0, RecordLength * MostRecords);
        Write("root/SRV1/KSTLLNK/KSW/DDB", test::Nul(512) + test::HeaderBytes(format, 1) +
                                               test::BlockBytes(format, format.LastLeaf(), entries) +
                                               test::Padded(records, 3072, 'r'));
    }

    fs::path Catalogue() const { return *this / "home/MasterFileInformation.mdb"; }
    fs::path Target() const { return *this / "target.mdb"; }
};

void AddRow(dao::Database& database, std::string_view line, std::int32_t number) {
    const auto* const table =
        std::ranges::find(Tables, line.empty() ? '\0' : line[0], &CatalogueTable::Letter);
    if (table == Tables.end()) return;
    test::TakePart(line, "|");
    const auto rows = database.OpenRecordset(std::u16string(table->Name));
    rows->AddNew();
    for (int column = 0; column < rows->FieldCount(); ++column) {
        const std::u16string value = platform::WideFromBytes(test::TakePart(line, "|"));
        if (column == table->NumberColumn) {
            rows->Fields(column).SetValue(number);
        } else if (!value.empty()) {
            test::Try([&] { rows->Fields(column).SetValue(value); });
        }
    }
    test::Try([&] { rows->Update(); });
}

/// Writes the lines of input up to an empty one into the catalogue.
void WriteCatalogue(const Site& site, std::string_view& input) {
    fs::copy_file(site / "empty.mdb", site.Catalogue(), fs::copy_options::overwrite_existing);
    const auto database = dao::OpenDatabase(site.Catalogue().string());
    constexpr std::int32_t MostLines = 200;
    for (std::int32_t number = 1; number < MostLines; ++number) {
        const std::string_view line = test::TakePart(input, "\n");
        if (line.empty()) break;
        AddRow(*database, line, number);
    }
    database->Close();
}

/// An operator who accepts what the boxes show.
class Dialog : public exporting::RangeDialog {
  public:
    void ShowModal(dao::Recordset& row, const exporting::RangeTexts& texts) override {
        for (const auto box : {exporting::RangeBox::Start, exporting::RangeBox::End})
            test::Try([&] { exporting::LeaveRangeBox(row, box, texts.Start, texts.End); });
    }
};

/// Cancels a run that goes on and on.
class Window : public platform::SilentWindow {
  public:
    explicit Window(catalogue::InterfaceState& state) : mState(state) {}
    void Yield() override {
        constexpr int Patience = 200;
        if (++mYields > Patience) mState.CancelRequested = true;
    }

  private:
    catalogue::InterfaceState& mState;
    int mYields = 0;
};

/// Stops without a word where the rules say so, as the program does.
void Build(catalogue::InterfaceState& state, const fs::path& target) {
    try {
        catalogue::BuildTargetDatabase(state, target.string());
    } catch (const catalogue::StopRequested&) {
        throw platform::Error(platform::InternalError);
    }
}

void ExportAll(const Site& site) {
    catalogue::InterfaceState state;
    test::TableListFake list;
    Window window(state);
    if (!test::Try([&] { catalogue::StartCatalogue(state, list); })) return;
    fs::remove(site.Target());
    if (!test::Try([&] { Build(state, site.Target()); })) return;
    for (std::int16_t box = 0; box < catalogue::TableList::BoxCount && list.At(box).Visible; ++box) {
        state.CancelRequested = false;
        list.SetTicked(box, true);
        test::Try([&] {
            Dialog dialog;
            exporting::x_SelectedTable_Click(state, list, window, dialog, box);
        });
        test::Try([&] {
            catalogue::EmptyTableFiles(state);
            catalogue::OpenFiles(state, list, window, box);
            catalogue::BuildCollection(state, list, box);
            exporting::AddData(state, list, window, box);
        });
    }
    test::Try([&] { state.TargetDatabase->Close(); });
}

/// Puts an odd value in the place of one column.
std::string WithOddColumn(std::string text, unsigned seed) {
    std::vector<std::size_t> bars;
    for (std::size_t i = 0; i + 1 < text.size(); ++i)
        if (text[i] == '|') bars.push_back(i);
    if (bars.empty()) return text;
    const std::size_t from = bars[seed % bars.size()] + 1;
    const std::size_t to = std::min(text.find_first_of("|\n", from), text.size());
    return text.replace(from, to - from, Odd[seed / 65536 % Odd.size()]);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room,
                                               unsigned seed) {
    constexpr unsigned BytesOneIn = 4;
    if (size < 2 || seed % BytesOneIn == 0) {
        return test::MutateOrMake(data, size, room, seed / BytesOneIn, 2, SoundInput);
    }
    const std::string changed = WithOddColumn({reinterpret_cast<const char*>(data), size}, seed);
    std::copy_n(changed.begin(), std::min(changed.size(), room), data);
    return std::min(changed.size(), room);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Site site;
    std::string_view input(reinterpret_cast<const char*>(data), size);
    WriteCatalogue(site, input);
    site.WriteRecords(input);
    platform::SilentWindow window;
    engine::LoadSiteConfiguration(true, window);
    if (!engine::gEngine) std::abort();
    ExportAll(site);
    engine::gEngine.reset();
    return 0;
}
