// The yardstick: writes the same orders into an SQLite database, in one transaction through one prepared
// statement.
#include <iostream>
#include <memory>
#include <sqlite3.h>
#include <stdexcept>

#include "bench/orders.h"
#include "bench/write_arguments.h"
#include "platform/code_page.h"

namespace {

using Connection = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

Connection Open(const std::string& path) {
    sqlite3* handle = nullptr;
    if (sqlite3_open(path.c_str(), &handle) != SQLITE_OK) throw std::runtime_error("cannot open " + path);
    return {handle, &sqlite3_close};
}

void Run(sqlite3* connection, const char* text) {
    char* message = nullptr;
    if (sqlite3_exec(connection, text, nullptr, nullptr, &message) != SQLITE_OK)
        throw std::runtime_error(message);
}

Statement Prepare(sqlite3* connection, const char* text) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(connection, text, -1, &statement, nullptr) != SQLITE_OK) {
        throw std::runtime_error(sqlite3_errmsg(connection));
    }
    return {statement, &sqlite3_finalize};
}

void WriteOrder(sqlite3_stmt* insert, const bench::Order& order) {
    int column = 0;
    sqlite3_bind_int(insert, ++column, order.Id);
    sqlite3_bind_int(insert, ++column, order.Customer);
    sqlite3_bind_int(insert, ++column, order.Quantity);
    for (const std::u16string& text : order.Texts) {
        const std::string utf8 = platform::BytesFromWide(text);  // the texts are ASCII
        sqlite3_bind_text(insert, ++column, utf8.data(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
    }
    for (const std::int64_t amount : order.Amounts) sqlite3_bind_int64(insert, ++column, amount);
    sqlite3_bind_double(insert, ++column, order.Date);
    sqlite3_bind_double(insert, ++column, double{order.Weight});
    if (sqlite3_step(insert) != SQLITE_DONE) throw std::runtime_error("a row was refused");
    sqlite3_reset(insert);
}

void Write(const bench::WriteArguments& arguments) {
    const Connection connection = Open(arguments.Out);
    constexpr const char* MakeTextIndex = "CREATE INDEX ByName ON Orders (CustomerName)";
    Run(connection.get(),
        "CREATE TABLE Orders (OrderId INTEGER PRIMARY KEY, CustomerId INTEGER, Quantity INTEGER, "
        "CustomerName TEXT, "
        "Address TEXT, City TEXT, Product TEXT, Remark TEXT, UnitPrice INTEGER, Total INTEGER, Ordered REAL, "
        "Weight REAL)");
    if (arguments.TextIndex && !arguments.TextIndexLast) Run(connection.get(), MakeTextIndex);
    Run(connection.get(), "BEGIN");
    const Statement insert = Prepare(connection.get(), "INSERT INTO Orders VALUES (?,?,?,?,?,?,?,?,?,?,?,?)");
    bench::OrderGenerator generator;
    for (std::int64_t row = 0; row < arguments.Rows; ++row) WriteOrder(insert.get(), generator.Next());
    if (arguments.TextIndex && arguments.TextIndexLast) Run(connection.get(), MakeTextIndex);
    Run(connection.get(), "COMMIT");
}

}  // namespace

int main(int argc, char** argv) {
    const bench::WriteArguments arguments = bench::ReadWriteArguments(argc, argv);
    try {
        Write(arguments);
    } catch (const std::runtime_error& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
