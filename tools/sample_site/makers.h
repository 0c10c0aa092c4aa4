// What fills a field: small functions that a table's description lists beside the field.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "tools/sample_site/table_spec.h"

namespace sample {

Maker KeyValue();
Maker Ordinal();
Maker Constant(std::int64_t value);
Maker Between(std::int64_t lowest, std::int64_t highest);

/// Mostly lowest to highest, once in a while rare.
Maker BetweenOrRarely(std::int64_t lowest, std::int64_t highest, std::int64_t rare);

/// Set once in so many rows.
Maker FlagOneIn(std::int64_t chances);

/// A day from 1 January of the first year to 28 December of the last, now and then the null date.
Maker DateIn(int firstYear, int lastYear);

/// The same, now and then digits that are no date.
Maker DateOrNonsense(int firstYear, int lastYear);

Maker Blank();
Maker Company();
Maker Person();
Maker PhoneNumber();
Maker Goods();
Maker RemarkText();
Maker Note(int length);

/// A new address; the two others take its state and its postal code.
Maker NewAddress();
Maker StateOfAddress();
Maker PostalCodeOfAddress();

/// One of the codes (upper case), remembered for CharacterOfCode (from 1).
Maker Code(std::initializer_list<const char*> codes);
Maker CharacterOfCode(int position);

/// A code of so many capital letters and digits that numbers the row.
Maker NumberedCode(int characters);

/// The number of the row's part; the 18 characters of it without dashes; the number of any part.
Maker OwnPartNumber();
Maker OwnPlainPartNumber();
Maker AnyPartNumber();

Maker AnyCustomer();
Maker AnyStore();
Maker AnyVendor();

}  // namespace sample
