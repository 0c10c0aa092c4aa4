// Writes the benchmark's orders into a new Access database through the data-access layer, as an export does.
#include <iostream>

#include "bench/orders.h"
#include "bench/write_arguments.h"
#include "platform/dao/database.h"
#include "platform/error.h"

namespace {

constexpr const char16_t* TableName = u"Orders";
constexpr int TextSize = 30;

enum Position : int { FirstText = 3, FirstAmount = 8, Ordered = 10, Weight = 11 };

void AppendTable(dao::Database& database) {
    const auto table = database.CreateTableDef(TableName);
    for (int position = 0; position < static_cast<int>(bench::ColumnNames.size()); ++position) {
        const char16_t* const name = bench::ColumnNames[static_cast<std::size_t>(position)];
        if (position < FirstText) {
            table->AppendField(table->CreateField(name, dao::FieldType::Long));
        } else if (position < FirstAmount) {
            table->AppendField(table->CreateField(name, dao::FieldType::Text, TextSize));
        } else if (position < Ordered) {
            table->AppendField(table->CreateField(name, dao::FieldType::Currency));
        } else {
            table->AppendField(table->CreateField(
                name, position == Ordered ? dao::FieldType::Date : dao::FieldType::Single));
        }
    }
    database.TableDefs().Append(table);
}

void AppendIndex(dao::Database& database, const char16_t* name, int position, bool primary) {
    const auto table = database.TableDefs().Item(TableName);
    dao::Index index = table->CreateIndex(name);
    index.SetPrimary(primary);
    index.Fields.push_back(table->CreateField(bench::ColumnNames[static_cast<std::size_t>(position)]));
    table->Indexes().Append(index);
}

void WriteOrder(dao::Recordset& orders, const bench::Order& order) {
    orders.AddNew();
    orders.Fields(0).SetValue(order.Id);
    orders.Fields(1).SetValue(order.Customer);
    orders.Fields(2).SetValue(order.Quantity);
    for (std::size_t i = 0; i < bench::Order::TextCount; ++i) {
        orders.Fields(FirstText + static_cast<int>(i)).SetValue(order.Texts[i]);
    }
    for (std::size_t i = 0; i < bench::Order::AmountCount; ++i) {
        orders.Fields(FirstAmount + static_cast<int>(i)).SetValue(dao::Currency{order.Amounts[i]});
    }
    orders.Fields(Ordered).SetValue(platform::OleDate{order.Date});
    orders.Fields(Weight).SetValue(double{order.Weight});
    orders.Update();
}

void Write(const bench::WriteArguments& arguments) {
    constexpr int IndexedPosition = FirstText + static_cast<int>(bench::IndexedText);
    const auto database = dao::CreateDatabase(arguments.Out, ";LANGID=0x0409;CP=1252;COUNTRY=0");
    AppendTable(*database);
    AppendIndex(*database, u"PrimaryKey", 0, true);
    if (arguments.TextIndex && !arguments.TextIndexLast)
        AppendIndex(*database, u"ByName", IndexedPosition, false);

    bench::OrderGenerator generator;
    const auto orders = database->OpenRecordset(TableName);
    for (std::int64_t row = 0; row < arguments.Rows; ++row) WriteOrder(*orders, generator.Next());
    if (arguments.TextIndex && arguments.TextIndexLast)
        AppendIndex(*database, u"ByName", IndexedPosition, false);
    database->Close();
}

}  // namespace

int main(int argc, char** argv) {
    const bench::WriteArguments arguments = bench::ReadWriteArguments(argc, argv);
    try {
        Write(arguments);
    } catch (const platform::Error& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
