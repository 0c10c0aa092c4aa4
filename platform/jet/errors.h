// Errors of the data-access layer: their numbers and their exact texts, for this folder and for the objects
// built on it.
#pragma once

#include <string_view>

#include "platform/error.h"

namespace jet {

/// The source that every data-access error names.
inline constexpr std::string_view DataAccessSource = "DAO.Database";

enum DataErrorNumber : int {
    InvalidDataArgument = 3001,
    InvalidPath = 3044,
    TableExists = 3010,
    ObjectExists = 3012,
    NoCurrentIndex = 3019,
    NotEditing = 3020,
    NoCurrentRecord = 3021,
    DuplicateKey = 3022,
    FileNotThere = 3024,
    DiskSpace = 3026,
    ReadOnlyDatabase = 3027,
    MaximumSize = 3036,
    TooManyIndexes = 3039,
    DiskRead = 3040,
    DiskOrNetwork = 3043,
    FileInUse = 3045,
    RecordTooLarge = 3047,
    CannotOpenDatabase = 3049,
    OpenedExclusively = 3051,
    NullInKey = 3058,
    TooFewParameters = 3061,
    QuerySyntax = 3075,
    UnknownTable = 3078,
    InvalidName = 3125,
    FieldTooSmall = 3163,
    RecordDeleted = 3167,
    TooManyFields = 3190,
    DatabaseExists = 3204,
    NotSupported = 3251,
    InvalidFieldType = 3259,
    NoFieldDefined = 3264,
    ItemNotFound = 3265,
    InvalidPropertyValue = 3271,
    TooManyIndexFields = 3277,
    PrimaryKeyExists = 3283,
    ZeroLengthText = 3315,
    UnrecognizedFormat = 3343,
    IndexExists = 3375,
    FieldExists = 3380,
    UnknownIndexField = 3409,
    ObjectInvalid = 3420,
    DataConversion = 3421,
    InvalidLocale = 3424,
    DamagedDatabase = 3428,
    CreationFailed = 3436,
    UnknownIndex = 3800
};

/// The error of that number with its standard text; name and second replace the text's first and second "|".
platform::Error DataError(int number, std::u16string_view name = {}, std::u16string_view second = {});

}  // namespace jet
