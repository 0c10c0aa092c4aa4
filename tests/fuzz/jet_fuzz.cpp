// Damaged Access files: opened, every table read by rows and by indexes, a row changed and one added. An
// input is a list of patches on a sound file: page, offset (two bytes, lowest first), length (up to 16),
// bytes; the first two bytes cut the file where they are not 0.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>

#include "platform/jet/database.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch_home.h"

namespace {

using Input = std::span<const std::uint8_t>;

constexpr std::size_t PageSize = 4096;
constexpr std::size_t PatchHead = 4;
constexpr std::size_t LongestPatch = 16;

/// The file of all inputs.
const std::string& Path() {
    static const test::ScratchHome home;
    static const std::string path = (home / "damaged.mdb").string();
    return path;
}

/// A file with all kinds of pages: rows, long values alone and in chains, indexes of one and two levels.
std::string MakeSound() {
    std::filesystem::remove(Path());
    const auto database = jet::Database::Create(Path());
    using enum jet::ColumnType;
    const auto table = database->CreateTable(
        u"T",
        {{u"Id", Long}, {u"Name", Text, 100}, {u"Memo", Memo}, {u"Paid", Currency}, {u"Flag", Boolean}});
    database->CreateIndex(*table, {u"PrimaryKey", {{u"Id"}}, true});
    database->CreateIndex(*table, {u"Name", {{u"Name"}, {u"Paid", false}}});
    for (std::int32_t i = 0; i < 150; ++i) {
        const std::u16string name(static_cast<std::size_t>(20 + i % 60),
                                  static_cast<char16_t>(u'a' + i % 26));
        const std::u16string memo(static_cast<std::size_t>(i % 50 == 0 ? 5000 : i * 7 % 300), u'm');
        table->Insert(std::vector<jet::Value>{i, name, memo, jet::Currency{i * 100}, i % 2 == 0});
    }
    database->Close();
    std::ifstream stream(Path(), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string Patched(Input input) {
    static const std::string sound = MakeSound();
    std::string bytes = sound;
    if (input.size() < 2) return bytes;
    const std::size_t cut = input[0] + 256U * input[1];
    input = input.subspan(2);
    while (input.size() > PatchHead) {
        const std::size_t at = input[0] * PageSize + (input[1] + 256U * input[2]) % PageSize;
        const std::size_t length =
            std::min<std::size_t>({input[3] % LongestPatch + 1, input.size() - PatchHead, LongestPatch});
        if (at + length <= bytes.size())
            std::copy_n(input.begin() + PatchHead, length, bytes.begin() + static_cast<std::ptrdiff_t>(at));
        input = input.subspan(PatchHead + length);
    }
    if (cut != 0) bytes.resize(std::min(bytes.size(), cut * 16));
    return bytes;
}

void Work(jet::Table& table) {
    std::vector<jet::Value> values;
    std::optional<jet::RowPointer> last;
    test::Try([&] {
        for (auto row = table.FirstRow(); row; row = table.NextRow(*row)) {
            last = row;
            test::Try([&] { table.Read(*row, values); });
        }
    });
    if (table.Definition().Columns.empty()) return;  // what follows asks for the first one
    for (std::size_t i = 0; i < table.Definition().RealIndexes.size(); ++i) {
        test::Try([&] {
            for (auto entry = table.Index(i).First(); !entry.AtEnd(); entry.Next())
                table.ReadColumn(entry.Row(), 0);
        });
    }
    if (last) test::Try([&] { table.UpdateFixed(*last, 0, 77); });
    test::Try([&] { table.Insert(values); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes = Patched({data, size});
    std::ofstream(Path(), std::ios::binary | std::ios::trunc) << bytes;
    test::Try([] {
        const auto database = jet::Database::Open(Path(), jet::Sharing::Shared);
        for (const std::u16string& name : database->TableNames()) {
            test::Try([&] {
                if (const auto table = database->FindTable(name)) Work(*table);
            });
        }
    });
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room,
                                               unsigned seed) {
    // One patch of a plausible place: the heads of pages, where the structure stands, more often than what
    // lies behind.
    return test::MutateOrMake(data, size, room, seed, 2, [](unsigned of) {
        std::string input(2, '\0');
        for (unsigned i = 0; i <= of % 3; ++i) {
            of = of * 1664525 + 1013904223;
            input += static_cast<char>(of >> 24 & 0x3F);
            input += static_cast<char>(of >> 16);
            input += static_cast<char>((of >> 8) % 4 == 0 ? of >> 4 & 0x0F : 0);
            input += static_cast<char>(of >> 12 & 3);
            for (unsigned k = 0; k < 4; ++k) input += static_cast<char>(of >> (5 * k));
        }
        return input;
    });
}
