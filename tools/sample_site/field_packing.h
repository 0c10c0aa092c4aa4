// Between a field's value, its bytes in a record and its cell in an export. Bytes and cells are both made
// from the value, never one from the other, so the cells say what reading the bytes must give.
#pragma once

#include <optional>
#include <string>

#include "engine/built_ins.h"
#include "platform/byte_string.h"
#include "tools/sample_site/table_spec.h"

namespace sample {

/// Compressed texts are written with the alphabet that the running program sets: the first four characters
/// are blank, comma, hyphen and full stop. The former alphabet comes back at the end of the scope.
class CompressionAlphabet {
  public:
    CompressionAlphabet();
    ~CompressionAlphabet();
    CompressionAlphabet(const CompressionAlphabet&) = delete;
    CompressionAlphabet& operator=(const CompressionAlphabet&) = delete;

  private:
    platform::ByteString mBefore;
};

/// The length of the text that so many bytes of compressed text stand for; an odd last byte counts as a whole
/// group of three.
int CompressedCharacters(int bytes);

/// Compresses text, padded with blanks, into length bytes; an odd last byte is zero, three blanks. Raises 5
/// for a text that is longer.
platform::ByteString Compressed(const std::string& text, int length);

/// Writes a whole number of length bytes at 1-based position.
void PackInteger(platform::ByteString& record, int position, int length, std::int64_t value);

/// Writes the field into record. State, postal code and single characters (Y, Z, X) are parts of another
/// field's text: nothing is written for them; a flag (B) sets its bit among the others. Raises 5 for a text
/// that is longer than its field.
void PackField(const FieldSpec& field, const FieldValue& value, platform::ByteString& record);

/// The cell of an export; nothing where the column refuses the value and stays unset.
std::optional<std::string> ExpectedCell(const FieldSpec& field, const FieldValue& value);

/// Whether an export's column of that field can be added up: whole numbers and amounts.
bool HasSum(const FieldSpec& field);

/// What the field adds to its column's sum: units for whole numbers, ten-thousandths for amounts.
std::int64_t SumPart(const FieldSpec& field, const FieldValue& value);

}  // namespace sample
