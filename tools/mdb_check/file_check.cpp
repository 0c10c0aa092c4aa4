#include "tools/mdb_check/file_check.h"

#include <map>
#include <set>

#include "platform/code_page.h"
#include "platform/jet/system_catalog.h"
#include "tools/mdb_check/page_claims.h"
#include "tools/mdb_check/table_check.h"

namespace mdb_check {

namespace {

constexpr std::int32_t LocalTable = 1;  // MSysObjects.Type

/// A row of MSysObjects or MSysACEs by column name.
class SystemRows {
  public:
    SystemRows(jet::PageFile& file, std::uint32_t definitionPage) : mTable(file, definitionPage) {}

    template <typename Visit>
    void ForEach(Visit visit) {
        for (auto row = mTable.FirstRow(); row; row = mTable.NextRow(*row)) {
            mTable.Read(*row, mValues);
            visit();
        }
    }

    std::int32_t Number(const char16_t* column) const {
        const auto* const number = std::get_if<std::int32_t>(&Of(column));
        return number == nullptr ? 0 : *number;
    }

    std::u16string Text(const char16_t* column) const {
        const auto* const text = std::get_if<std::u16string>(&Of(column));
        return text == nullptr ? std::u16string() : *text;
    }

  private:
    const jet::Value& Of(const char16_t* column) const {
        static const jet::Value Nothing;
        const auto position = mTable.Definition().FindColumn(column);
        return position ? mValues[*position] : Nothing;
    }

    jet::Table mTable;
    std::vector<jet::Value> mValues;
};

std::map<std::uint32_t, std::string> TablesOf(jet::PageFile& file, Report& report) {
    std::map<std::uint32_t, std::string> tables;
    SystemRows objects(file, jet::ObjectsPage);
    objects.ForEach([&] {
        if (objects.Number(u"Type") != LocalTable) return;
        const std::string name = platform::Utf8FromWide(objects.Text(u"Name"));
        const auto page = static_cast<std::uint32_t>(objects.Number(u"Id"));
        if (!tables.emplace(page, name).second) {
            report.Damage("tables " + tables[page] + " and " + name + " have the same definition page");
        }
    });
    return tables;
}

/// Every table must have permissions, or Access refuses to open it.
void CheckPermissions(jet::PageFile& file, const std::map<std::uint32_t, std::string>& tables,
                      Report& report) {
    std::set<std::uint32_t> permitted;
    SystemRows aces(file, jet::AcesPage);
    aces.ForEach([&] { permitted.insert(static_cast<std::uint32_t>(aces.Number(u"ObjectId"))); });
    for (const auto& [page, name] : tables) {
        if (!permitted.contains(page)) report.Note("table " + name + " has no permissions");
    }
}

void CheckPages(jet::PageFile& file, Report& report) {
    PageClaims claims(file, report);
    claims.Claim(jet::HeaderPage, "the header");
    claims.Claim(jet::GlobalMapPage, "the global map");
    claims.ClaimMap({jet::GlobalMapPage, 0}, "the global map");
    claims.ClaimMap({jet::GlobalMapPage, 1}, "the second global map");
    const std::map<std::uint32_t, std::string> tables = TablesOf(file, report);
    for (const auto& [page, name] : tables) {
        try {
            TableCheck(file, page, name, claims, report).Run();
        } catch (const platform::Error& error) {
            report.Damage("table " + name + ": " + error.Description);
        }
    }
    claims.CompareWithGlobalMap();
    CheckPermissions(file, tables, report);
}

}  // namespace

void CheckFile(const std::string& path, Report& report) {
    try {
        const auto file = jet::PageFile::Open(path, jet::Sharing::Shared);
        CheckPages(*file, report);
    } catch (const platform::Error& error) {
        report.Damage(error.what());
    }
}

}  // namespace mdb_check
