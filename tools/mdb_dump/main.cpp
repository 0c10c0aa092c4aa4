// mdb_dump FILE [TABLE...]: prints the rows of an Access database file as this program reads them, one JSON
// object a line: {"table": name, "row": {column: value}}. A Null is left out, dates are days since
// 30 December 1899, bytes are hexadecimal text. Before a table's rows a line names its columns and their
// types: {"table": name, "columns": [[name, number of the type]]}.
#include <array>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/jet/database.h"
#include "platform/jet/errors.h"

namespace {

void AppendHex(std::string& out, unsigned value, int digits) {
    constexpr std::string_view Digits = "0123456789abcdef";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) out += Digits[value >> shift & 0xFU];
}

std::string Quoted(std::u16string_view text) {
    std::string out = "\"";
    for (const char16_t c : text) {
        if (c == u'"' || c == u'\\') out += '\\';
        if (c >= u' ' && c <= u'~') {
            out += static_cast<char>(c);
        } else {
            out += "\\u";
            AppendHex(out, c, 4);
        }
    }
    return out += '"';
}

template <typename Number>
std::string Shortest(Number value) {
    std::array<char, 64> digits{};
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr};
}

struct Json {
    jet::ColumnType Type;

    std::string operator()(std::monostate) const { return "null"; }
    std::string operator()(bool value) const { return value ? "true" : "false"; }
    std::string operator()(std::int32_t value) const { return Shortest(value); }
    std::string operator()(double value) const {
        return Type == jet::ColumnType::Single ? Shortest(static_cast<float>(value)) : Shortest(value);
    }
    std::string operator()(jet::Currency value) const { return Shortest(value.Scaled) + "e-4"; }
    std::string operator()(platform::OleDate value) const { return Shortest(value.Serial); }
    std::string operator()(const std::u16string& value) const { return Quoted(value); }
    std::string operator()(const jet::Binary& value) const {
        std::string out = "\"";
        for (const char byte : value.Bytes) AppendHex(out, static_cast<unsigned char>(byte), 2);
        return out += '"';
    }
};

void PrintColumns(const std::string& table, const std::vector<jet::Column>& columns) {
    std::string line = R"({"table": )" + table + R"(, "columns": [)";
    for (const jet::Column& column : columns) {
        if (&column != &columns.front()) line += ", ";
        line += '[' + Quoted(column.Name) + ", " + std::to_string(static_cast<int>(column.Type)) + "]";
    }
    std::cout << line << "]}\n";
}

void PrintTable(jet::Database& database, const std::u16string& name) {
    const auto table = database.FindTable(name);
    if (!table) throw jet::DataError(jet::UnknownTable, name);
    const std::string quoted = Quoted(name);
    const std::vector<jet::Column>& columns = table->Definition().Columns;
    PrintColumns(quoted, columns);
    std::vector<jet::Value> values;
    for (auto row = table->FirstRow(); row; row = table->NextRow(*row)) {
        table->Read(*row, values);
        std::string line = R"({"table": )" + quoted + R"(, "row": {)";
        const char* separator = "";
        for (std::size_t i = 0; i < columns.size(); ++i) {
            if (std::holds_alternative<std::monostate>(values[i])) continue;
            line += separator + Quoted(columns[i].Name) + ": " + std::visit(Json{columns[i].Type}, values[i]);
            separator = ", ";
        }
        std::cout << line << "}}\n";
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: mdb_dump FILE [TABLE...]\n";
        return 2;
    }
    try {
        const auto database = jet::Database::Open(argv[1], jet::Sharing::Shared);
        std::vector<std::u16string> names;
        for (int i = 2; i < argc; ++i) names.push_back(platform::WideFromUtf8(argv[i]));
        if (names.empty()) names = database->TableNames();
        for (const std::u16string& name : names) PrintTable(*database, name);
    } catch (const platform::Error& error) {
        std::cerr << argv[1] << ": " << error.what() << '\n';
        return 1;
    }
    return 0;
}
