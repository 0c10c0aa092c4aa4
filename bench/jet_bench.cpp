// jet_bench: what the parts of the Access file format cost. An item is a row, a key, or a search; the file it
// works on is made in the folder for temporary files and removed. The rows are those of orders.h.
#include <benchmark/benchmark.h>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "bench/orders.h"
#include "platform/jet/database.h"
#include "platform/jet/row_codec.h"
#include "platform/jet/sort_keys.h"

namespace {

using Row = std::vector<jet::Value>;

constexpr std::int32_t Rows = 200'000;
constexpr std::int32_t RowsToInsert = 50'000;
constexpr std::size_t TextColumn = 3;
constexpr std::uint16_t TextSize = 30;

/// A new database file that goes with the object.
class ScratchDatabase {
  public:
    ScratchDatabase() {
        std::string pattern = (std::filesystem::temp_directory_path() / "jet_bench-XXXXXX").string();
        mFolder = mkdtemp(pattern.data());
        Make();
    }
    ~ScratchDatabase() {
        mDatabase.reset();
        std::error_code ignored;
        std::filesystem::remove_all(mFolder, ignored);
    }
    ScratchDatabase(const ScratchDatabase&) = delete;
    ScratchDatabase& operator=(const ScratchDatabase&) = delete;

    jet::Database& operator*() { return *mDatabase; }
    jet::Database* operator->() { return mDatabase.get(); }

    /// Begins anew with an empty file.
    void Make() {
        const auto path = mFolder / "bench.mdb";
        mDatabase.reset();
        std::filesystem::remove(path);
        mDatabase = jet::Database::Create(path.string());
    }

  private:
    std::filesystem::path mFolder;
    std::unique_ptr<jet::Database> mDatabase;
};

std::shared_ptr<jet::Table> MakeOrders(jet::Database& database) {
    using enum jet::ColumnType;
    constexpr jet::ColumnType Types[] = {Long, Long, Long,     Text,     Text, Text,
                                         Text, Text, Currency, Currency, Date, Single};
    std::vector<jet::ColumnSpec> columns;
    for (std::size_t i = 0; i < bench::ColumnNames.size(); ++i)
        columns.push_back({bench::ColumnNames[i], Types[i], TextSize});
    return database.CreateTable(u"Orders", columns);
}

Row RowOf(const bench::Order& order) {
    Row row{order.Id, order.Customer, order.Quantity};
    for (const std::u16string& text : order.Texts) row.emplace_back(text);
    for (const std::int64_t amount : order.Amounts) row.emplace_back(jet::Currency{amount});
    row.emplace_back(platform::OleDate{order.Date});
    row.emplace_back(double{order.Weight});
    return row;
}

std::vector<Row> MakeRows(std::int32_t count) {
    bench::OrderGenerator generator;
    std::vector<Row> rows;
    for (std::int32_t i = 0; i < count; ++i) rows.push_back(RowOf(generator.Next()));
    return rows;
}

void CountItems(benchmark::State& state, std::int64_t itemsOfAnIteration) {
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * itemsOfAnIteration);
}

/// Rows into a new table with so many indexes, the closing of the file included.
void Insert(benchmark::State& state) {
    const std::vector<Row> rows = MakeRows(RowsToInsert);
    ScratchDatabase database;
    for (auto _ : state) {
        state.PauseTiming();
        database.Make();
        const auto orders = MakeOrders(*database);
        for (std::size_t i = 0; i < static_cast<std::size_t>(state.range(0)); ++i)
            database->CreateIndex(*orders, {bench::ColumnNames[i], {{bench::ColumnNames[i]}}});
        state.ResumeTiming();
        for (const Row& row : rows) {
            orders->Insert(row);
            database->RowAdded();
        }
        database->Close();
    }
    CountItems(state, RowsToInsert);
}
BENCHMARK(Insert)->Arg(0)->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond);

void EncodeRow(benchmark::State& state) {
    const Row row = MakeRows(1).front();
    ScratchDatabase database;
    jet::RowEncoder encoder(MakeOrders(*database)->Definition());
    for (auto _ : state) {
        encoder.Encode(row);
        benchmark::DoNotOptimize(encoder.Row().data());
    }
    CountItems(state, 1);
}
BENCHMARK(EncodeRow);

void TextKey(benchmark::State& state) {
    const std::u16string text =
        state.range(0) == 0 ? u"Harbour Street 17, Newport" : u"\u00C5ngstr\u00F6m & S\u00F8n's co-operative";
    std::string key;
    for (auto _ : state) {
        key.clear();
        jet::AppendTextKey4(key, text, true);
        benchmark::DoNotOptimize(key.data());
    }
    CountItems(state, 1);
}
BENCHMARK(TextKey)->Arg(0)->Arg(1)->ArgName("accents");

/// A table of rows with an index over a random text.
class Filled : public benchmark::Fixture {
  public:
    void SetUp(benchmark::State&) override {
        mDatabase = std::make_unique<ScratchDatabase>();
        mRows = MakeRows(Rows);
        mOrders = MakeOrders(**mDatabase);
        (*mDatabase)->CreateIndex(*mOrders, {u"ByName", {{bench::ColumnNames[TextColumn]}}});
        for (const Row& row : mRows) mOrders->Insert(row);
        (*mDatabase)->Flush();
    }
    void TearDown(benchmark::State&) override {
        mOrders.reset();
        mDatabase.reset();
    }

  protected:
    std::unique_ptr<ScratchDatabase> mDatabase;
    std::shared_ptr<jet::Table> mOrders;
    std::vector<Row> mRows;
};

BENCHMARK_DEFINE_F(Filled, Scan)(benchmark::State& state) {
    Row row;
    for (auto _ : state) {
        for (auto place = mOrders->FirstRow(); place; place = mOrders->NextRow(*place))
            mOrders->Read(*place, row);
    }
    CountItems(state, Rows);
}
BENCHMARK_REGISTER_F(Filled, Scan)->Unit(benchmark::kMillisecond);

BENCHMARK_DEFINE_F(Filled, Find)(benchmark::State& state) {
    const jet::IndexTree& index = mOrders->Index(0);
    std::string key;
    std::size_t next = 0;
    for (auto _ : state) {
        key.clear();
        jet::AppendTextKey4(key, std::get<std::u16string>(mRows[next][TextColumn]), true);
        next = (next + 7919) % mRows.size();  // a prime: every row comes up, in another order than the file's
        if (!index.Contains(key)) state.SkipWithError("a key is missing");
    }
    CountItems(state, 1);
}
BENCHMARK_REGISTER_F(Filled, Find);

BENCHMARK_DEFINE_F(Filled, BuildIndex)(benchmark::State& state) {
    int made = 0;
    for (auto _ : state) {
        (*mDatabase)
            ->CreateIndex(*mOrders, {u"Again" + std::u16string(static_cast<std::size_t>(++made), u'x'),
                                     {{bench::ColumnNames[TextColumn + 1]}}});
    }
    CountItems(state, Rows);
}
BENCHMARK_REGISTER_F(Filled, BuildIndex)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace

BENCHMARK_MAIN();
