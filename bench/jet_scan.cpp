// Reads every column of every row of a table back through the data-access layer: jet_scan FILE [TABLE].
// Prints the rows, and the number of values that are not Null.
#include <cstdint>
#include <iostream>
#include <variant>

#include "platform/code_page.h"
#include "platform/dao/database.h"
#include "platform/error.h"

int main(int argc, char** argv) {
    if (argc < 2 || argc > 3) {
        std::cerr << "usage: " << argv[0] << " FILE [TABLE]\n";
        return 2;
    }
    try {
        const auto database = dao::OpenDatabase(argv[1], true);
        const auto rows = database->OpenRecordset(platform::WideFromUtf8(argc > 2 ? argv[2] : "Orders"));
        const int columns = rows->FieldCount();
        std::uint64_t count = 0;
        std::uint64_t values = 0;
        for (; !rows->AtEnd(); rows->MoveNext(), ++count) {
            for (int i = 0; i < columns; ++i)
                values += std::holds_alternative<std::monostate>(rows->Fields(i).GetValue()) ? 0U : 1U;
        }
        std::cout << count << " rows, " << values << " values\n";
        database->Close();
    } catch (const platform::Error& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
