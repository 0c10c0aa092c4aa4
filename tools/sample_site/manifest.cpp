#include "tools/sample_site/manifest.h"

#include <type_traits>

#include "tools/sample_site/canonical_cell.h"
#include "tools/sample_site/field_packing.h"

namespace sample {

namespace {

/// Writes JSON, one member a line. Names and texts are plain ASCII without quotes.
class JsonWriter {
  public:
    void Open(const std::string& name, char bracket) {
        Begin(name);
        mText += bracket;
        mClosing += bracket == '{' ? '}' : ']';
        mIsFirst = true;
    }

    void Close() {
        const char bracket = mClosing.back();
        mClosing.pop_back();
        NewLine();
        mText += bracket;
        mIsFirst = false;
    }

    void Add(const std::string& name, const std::string& text) {
        Begin(name);
        mText += '"' + text + '"';
    }

    template <typename Integer>
    requires std::is_integral_v<Integer>
    void Add(const std::string& name, Integer number) {
        Begin(name);
        mText += std::to_string(number);
    }

    std::string Done() { return mText + "\n"; }

  private:
    void NewLine() {
        mText += '\n';
        mText.append(2 * mClosing.size(), ' ');
    }

    void Begin(const std::string& name) {
        if (mClosing.empty()) return;
        if (!mIsFirst) mText += ',';
        mIsFirst = false;
        NewLine();
        if (!name.empty()) mText += '"' + name + "\": ";
    }

    std::string mText;
    std::string mClosing;  // brackets to come
    bool mIsFirst = true;
};

std::string TypeName(dao::FieldType type) {
    switch (type) {
        case dao::FieldType::Memo:
            return "Memo";
        case dao::FieldType::Long:
            return "Long";
        case dao::FieldType::Single:
            return "Single";
        case dao::FieldType::Currency:
            return "Currency";
        case dao::FieldType::Date:
            return "Date";
        default:
            return "Text";
    }
}

std::string ModeOf(const TableSpec& spec) {
    if (spec.IsReshaped) return "special";
    return spec.IsKeyed() ? "keyed" : "by record";
}

void AddColumn(JsonWriter& json, const FieldSpec& field, const ColumnAccount& account) {
    const ColumnSpec column = ColumnOf(field);
    json.Open("", '{');
    json.Add("name", field.Name);
    json.Add("code", std::string(1, field.Code));
    json.Add("type", TypeName(column.Type));
    if (column.Size > 0) json.Add("size", column.Size);
    json.Add("unset", account.Unset);
    json.Add("checksum", account.Checksum);
    if (HasSum(field)) {
        json.Add("sum",
                 column.Type == dao::FieldType::Currency ? CurrencyCell(account.Sum) : LongCell(account.Sum));
    }
    json.Close();
}

void AddFiles(JsonWriter& json, const TableReport& table) {
    if (table.Spec.IsKeyed()) {
        json.Open("keyFile", '{');
        json.Add("name", table.Spec.Key.FileName);
        json.Add("blockSize", ShapeOf(table.Spec.Key).BlockSize());
        json.Add("keyLength", table.Spec.Key.Length());
        json.Add("entries", table.IndexEntries);
        json.Add("blocks", table.IndexBlocks);
        json.Add("levels", table.IndexLevels);
        json.Close();
    }
    json.Open("dataFiles", '[');
    for (const DataFileSpec& file : table.Spec.DataFiles) {
        json.Open("", '{');
        json.Add("name", file.Name);
        json.Add("recordLength", file.RecordLength);
        json.Close();
    }
    json.Close();
}

void AddTable(JsonWriter& json, const TableReport& table) {
    const TableAccount& account = table.Account;
    json.Open("", '{');
    json.Add("name", table.Spec.Name);
    json.Add("hierarchy", table.Spec.Hierarchy);
    json.Add("mode", ModeOf(table.Spec));
    AddFiles(json, table);
    json.Add("recordsStored", table.RecordsStored);
    json.Add("recordsDeleted", table.RecordsDeleted);
    json.Add("expectedRows", account.Rows);
    json.Add("outsideStatusRange", account.OutsideStatus);
    json.Add("refusedRepeatedKey", account.RefusedRepeatedKey);
    json.Add("refusedUnsetKey", account.RefusedUnsetKey);
    json.Open("columns", '[');
    for (std::size_t i = 0; i < table.Spec.Fields.size(); ++i)
        AddColumn(json, table.Spec.Fields[i], account.Columns[i]);
    json.Close();
    json.Close();
}

}  // namespace

std::string ManifestText(const SampleOptions& options, const std::vector<TableReport>& tables) {
    JsonWriter json;
    json.Open("", '{');
    json.Add("seed", options.Seed);
    json.Add("records", options.Records);
    json.Add("server", std::string(SiteServer));
    json.Add("directory", std::string(SiteDirectory));
    json.Open("tables", '[');
    for (const TableReport& table : tables) AddTable(json, table);
    json.Close();
    json.Close();
    return json.Done();
}

}  // namespace sample
