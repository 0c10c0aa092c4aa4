// Errors of the data-access layer by what they mean to a program that writes rows.
#pragma once

#include "platform/error.h"

namespace dao {

/// The number of the error of an object that is closed, or whose database is.
inline constexpr int ObjectInvalid = 3420;

/// Whether an error of Update, Flush or Close tells of the database's file (full, damaged, not writable, not
/// to be read) and not of a row, so that it would befall every row after it too.
bool IsFileError(const platform::Error& error);

}  // namespace dao
