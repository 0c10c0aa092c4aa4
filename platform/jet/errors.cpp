#include "platform/jet/errors.h"

#include <algorithm>
#include <array>
#include <string>

#include "platform/code_page.h"

namespace jet {

namespace {

struct ErrorText {
    int Number;
    std::string_view Text;  // each "|" stands for an inserted name
};

constexpr std::array ErrorTexts{
    ErrorText{InvalidDataArgument, "Invalid argument."},
    ErrorText{TableExists, "Table '|' already exists."},
    ErrorText{ObjectExists, "Object '|' already exists."},
    ErrorText{NoCurrentIndex, "Operation invalid without a current index."},
    ErrorText{
        NotEditing,
        "You tried to call Update or CancelUpdate or attempted to update a Field in a recordset without "
        "first calling AddNew or Edit."},
    ErrorText{NoCurrentRecord, "No current record."},
    ErrorText{
        DuplicateKey,
        "The changes you requested to the table were not successful because they would create duplicate "
        "values in the index, primary key, or relationship. Change the data in the field or fields that "
        "contain duplicate data, remove the index, or redefine the index to permit duplicate entries and "
        "try again."},
    ErrorText{FileNotThere, "Could not find file '|'."},
    ErrorText{DiskSpace, "Not enough space on disk."},
    ErrorText{ReadOnlyDatabase, "Cannot update. Database or object is read-only."},
    ErrorText{MaximumSize, "Database has reached maximum size."},
    ErrorText{TooManyIndexes, "Could not create index; too many indexes already defined."},
    ErrorText{DiskRead, "Disk I/O error during read."},
    ErrorText{DiskOrNetwork, "Disk or network error."},
    ErrorText{InvalidPath,
              "'|' is not a valid path. Make sure that the path name is spelled correctly and that you are "
              "connected to the server on which the file resides."},
    ErrorText{FileInUse, "Could not use '|'; file already in use."},
    ErrorText{RecordTooLarge, "Record is too large."},
    ErrorText{
        CannotOpenDatabase,
        "Cannot open database '|'. It may not be a database that your application recognizes, or the file "
        "may be corrupt."},
    ErrorText{
        OpenedExclusively,
        "The Microsoft Jet database engine cannot open the file '|'. It is already opened exclusively by "
        "another user, or you need permission to view its data."},
    ErrorText{NullInKey, "Index or primary key cannot contain a Null value."},
    ErrorText{TooFewParameters, "Too few parameters. Expected |."},
    ErrorText{QuerySyntax, "| in query expression '|'."},
    ErrorText{
        UnknownTable,
        "The Microsoft Jet database engine cannot find the input table or query '|'. Make sure it exists "
        "and that its name is spelled correctly."},
    ErrorText{InvalidName,
              "'|' is not a valid name. Make sure that it does not include invalid characters or punctuation "
              "and that it is not too long."},
    ErrorText{FieldTooSmall,
              "The field is too small to accept the amount of data you attempted to add. Try inserting or "
              "pasting less data."},
    ErrorText{RecordDeleted, "Record is deleted."},
    ErrorText{TooManyFields, "Too many fields defined."},
    ErrorText{DatabaseExists, "Database already exists."},
    ErrorText{NotSupported, "Operation is not supported for this type of object."},
    ErrorText{InvalidFieldType, "Invalid field data type."},
    ErrorText{NoFieldDefined, "No field defined -- cannot append TableDef or Index."},
    ErrorText{ItemNotFound, "Item not found in this collection."},
    ErrorText{InvalidPropertyValue, "Invalid property value."},
    ErrorText{TooManyIndexFields, "Cannot have more than 10 fields in an index."},
    ErrorText{PrimaryKeyExists, "Primary key already exists."},
    ErrorText{ZeroLengthText, "Field '|' cannot be a zero-length string."},
    ErrorText{UnrecognizedFormat, "Unrecognized database format '|'."},
    ErrorText{IndexExists, "Table '|' already has an index named '|'."},
    ErrorText{FieldExists, "Field '|' already exists in table '|'."},
    ErrorText{UnknownIndexField, "Invalid field name '|' in definition of index or relationship."},
    ErrorText{ObjectInvalid, "Object is invalid or no longer set."},
    ErrorText{DataConversion, "Data type conversion error."},
    ErrorText{InvalidLocale, "Cannot create database because the locale is invalid."},
    ErrorText{DamagedDatabase,
              "A problem occurred in your database. Correct the problem by repairing and compacting the "
              "database."},
    ErrorText{CreationFailed, "Failure creating file."},
    ErrorText{UnknownIndex, "'|' is not an index in this table."}};

void ReplaceFirstBar(std::string& text, std::size_t from, const std::string& name) {
    const std::size_t bar = text.find('|', from);
    if (bar != std::string::npos) text.replace(bar, 1, name);
}

}  // namespace

platform::Error DataError(int number, std::u16string_view name, std::u16string_view second) {
    const auto* found = std::ranges::find(ErrorTexts, number, &ErrorText::Number);
    std::string text(found != ErrorTexts.end() ? found->Text : "Reserved error.");

    const std::size_t firstBar = text.find('|');
    const std::string firstName = platform::Utf8FromWide(name);
    ReplaceFirstBar(text, 0, firstName);
    if (firstBar != std::string::npos) {
        ReplaceFirstBar(text, firstBar + firstName.size(), platform::Utf8FromWide(second));
    }
    return {number, std::string(DataAccessSource), std::move(text)};
}

}  // namespace jet
