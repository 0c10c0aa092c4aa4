#include "tools/sample_site/makers.h"

#include <vector>

#include "tools/sample_site/part_numbers.h"

namespace sample {

namespace {

constexpr std::int64_t NullDateChances = 25;
constexpr std::int64_t NonsenseChances = 200;
constexpr std::int64_t RareChances = 150;
constexpr std::size_t PlainNumberLength = 18;

platform::CalendarDay AnyDay(Random& random, int firstYear, int lastYear) {
    constexpr int ShortestMonth = 28;
    return {static_cast<int>(random.Between(firstYear, lastYear)), static_cast<int>(random.Between(1, 12)),
            static_cast<int>(random.Between(1, ShortestMonth))};
}

Maker TextFrom(std::string (*make)(Random&)) {
    return [make](RowContext& row) -> FieldValue { return make(row.Numbers); };
}

}  // namespace

Maker KeyValue() {
    return [](RowContext& row) -> FieldValue { return row.Key; };
}

Maker Ordinal() {
    return [](RowContext& row) -> FieldValue { return row.Ordinal; };
}

Maker Constant(std::int64_t value) {
    return [value](RowContext&) -> FieldValue { return value; };
}

Maker Between(std::int64_t lowest, std::int64_t highest) {
    return [lowest, highest](RowContext& row) -> FieldValue { return row.Numbers.Between(lowest, highest); };
}

Maker BetweenOrRarely(std::int64_t lowest, std::int64_t highest, std::int64_t rare) {
    return [lowest, highest, rare](RowContext& row) -> FieldValue {
        if (row.Numbers.OneIn(RareChances)) return rare;
        return row.Numbers.Between(lowest, highest);
    };
}

Maker FlagOneIn(std::int64_t chances) {
    return [chances](RowContext& row) -> FieldValue { return row.Numbers.OneIn(chances); };
}

Maker DateIn(int firstYear, int lastYear) {
    return [firstYear, lastYear](RowContext& row) -> FieldValue {
        if (row.Numbers.OneIn(NullDateChances)) return DateValue{};
        return DateValue{AnyDay(row.Numbers, firstYear, lastYear)};
    };
}

Maker DateOrNonsense(int firstYear, int lastYear) {
    return [usual = DateIn(firstYear, lastYear)](RowContext& row) -> FieldValue {
        if (row.Numbers.OneIn(NonsenseChances)) return DateValue{std::nullopt, true};
        return usual(row);
    };
}

Maker Blank() {
    return [](RowContext&) -> FieldValue { return std::string(); };
}

Maker Company() {
    return TextFrom(CompanyName);
}

Maker Person() {
    return TextFrom(PersonName);
}

Maker PhoneNumber() {
    return TextFrom(Phone);
}

Maker Goods() {
    return TextFrom(PartDescription);
}

Maker RemarkText() {
    return TextFrom(Remark);
}

Maker Note(int length) {
    return [length](RowContext& row) -> FieldValue {
        return NoteText(row.Numbers, static_cast<std::size_t>(length));
    };
}

Maker NewAddress() {
    return [](RowContext& row) -> FieldValue {
        row.LastAddress = MakeAddress(row.Numbers);
        return row.LastAddress.Text;
    };
}

Maker StateOfAddress() {
    return [](RowContext& row) -> FieldValue { return row.LastAddress.State; };
}

Maker PostalCodeOfAddress() {
    return [](RowContext& row) -> FieldValue { return row.LastAddress.PostalCode; };
}

Maker Code(std::initializer_list<const char*> codes) {
    return [all = std::vector<std::string>(codes.begin(), codes.end())](RowContext& row) -> FieldValue {
        row.LastCode = row.Numbers.Pick(std::span<const std::string>(all));
        return row.LastCode;
    };
}

Maker CharacterOfCode(int position) {
    return [position](RowContext& row) -> FieldValue {
        const auto index = static_cast<std::size_t>(position) - 1;
        return index < row.LastCode.size() ? row.LastCode.substr(index, 1) : std::string(" ");
    };
}

Maker NumberedCode(int characters) {
    return [characters](RowContext& row) -> FieldValue {
        constexpr std::string_view Digits = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
        std::string code(static_cast<std::size_t>(characters), '0');
        std::int64_t rest = row.Ordinal;
        for (auto digit = code.rbegin(); digit != code.rend(); ++digit, rest /= std::ssize(Digits))
            *digit = Digits[static_cast<std::size_t>(rest % std::ssize(Digits))];
        return code;
    };
}

Maker OwnPartNumber() {
    return [](RowContext& row) -> FieldValue { return PartNumberAt(row.Ordinal, row.Plan.Parts); };
}

Maker OwnPlainPartNumber() {
    return [](RowContext& row) -> FieldValue {
        return PartNumberAt(row.Ordinal, row.Plan.Parts).Stored.substr(0, PlainNumberLength);
    };
}

Maker AnyPartNumber() {
    return [](RowContext& row) -> FieldValue {
        return PartNumberAt(row.Numbers.Between(1, row.Plan.Parts), row.Plan.Parts);
    };
}

Maker AnyCustomer() {
    return [](RowContext& row) -> FieldValue {
        return CustomerNumber(row.Numbers.Between(1, row.Plan.Customers));
    };
}

Maker AnyStore() {
    return [](RowContext& row) -> FieldValue { return StoreNumber(row.Numbers.Between(1, row.Plan.Stores)); };
}

Maker AnyVendor() {
    return
        [](RowContext& row) -> FieldValue { return VendorNumber(row.Numbers.Between(1, row.Plan.Vendors)); };
}

}  // namespace sample
