#include "engine/records.h"

#include <algorithm>
#include <string>

#include "engine/field_codec.h"
#include "engine/index_layout.h"
#include "platform/checked.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/numbers.h"

namespace engine {

using platform::CheckedAdd;
using platform::CheckedMultiply;
using platform::Error;

namespace {

constexpr int UndefinedHandle = -10;
constexpr int IllegalLength = 36;
constexpr int LockRefused = 57;
constexpr int IllegalRecord = 81;

const cLogicalFile& Required(const LogicalFileHandle& logicalFile) {
    if (!logicalFile) throw Error(platform::ObjectNotSet);
    return *logicalFile;
}

void RequireDefined(const LogicalFileHandle& logicalFile, const char* source) {
    if (!logicalFile) throw Error(UndefinedHandle, source, "LogicalFile parameter is undefined");
}

/// Raises 81 for a record number outside 1 to LastRecord; shown is the number that its text names.
void RequireRecord(const cLogicalFile& file, std::int32_t recordNumber, std::int32_t shown,
                   const char* source) {
    if (recordNumber >= 1 && recordNumber <= file.LastRecord) return;
    throw Error(IllegalRecord, source,
                "Illegal Record Number for File: " + platform::Utf8FromBytes(file.FileName) +
                    " and Record: " + platform::PlainDecimal(shown));
}

ByteString NulRecord(const cLogicalFile& file) {
    if (file.RecordLength < 0) throw Error(platform::InvalidArgument);
    return ByteString(static_cast<std::size_t>(file.RecordLength), '\0');
}

void WriteRecordZero(const cLogicalFile& file, std::string_view header) {
    iWriteFile(file.OpenFile, header, RecordOffset(file, 0));
}

void InitPlainFile(const LogicalFileHandle& logicalFile) {
    constexpr std::int32_t StateOfEmptyFile = -2;
    constexpr std::int32_t EmptyChain = -1;
    ByteString header(BlockSize, '\0');
    iPack('J', header, StateOfEmptyFile, HeaderStatePosition);
    iPack('L', header, EmptyChain, ChainHeadPosition);
    // The header block may cover the first records; they are rewritten below.
    iBlockWriteFile(logicalFile->OpenFile, logicalFile->Position, header);

    const ByteString record = NulRecord(*logicalFile);
    for (std::int32_t number = 1; number <= logicalFile->LastRecord; number = CheckedAdd(number, 1))
        iLwriteFile(logicalFile, number, record);
}

void InitKeyedFile(const cLogicalFile& file, std::int32_t keyLength, bool duplicateKeys,
                   std::int32_t blockingFactor) {
    iBlockWriteFile(file.OpenFile, file.Position,
                    EmptyIndexHeader(keyLength, file.LastRecord, duplicateKeys, blockingFactor));
    iBlockWriteFile(file.OpenFile, CheckedAdd(file.Position, 1), EmptyIndexLeaf());
}

}  // namespace

std::int32_t RecordOffset(const cLogicalFile& LogicalFile, std::int32_t RecordNumber) {
    return CheckedAdd(CheckedMultiply(LogicalFile.Position, BlockSize),
                      CheckedMultiply(RecordNumber, LogicalFile.RecordLength));
}

ByteString ReadRecordZero(const cLogicalFile& LogicalFile) {
    return iReadFile(LogicalFile.OpenFile, RecordHeaderLength, RecordOffset(LogicalFile, 0));
}

ByteString iLreadFile(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber) {
    constexpr const char* Source = "iLreadFile";
    RequireDefined(LogicalFile, Source);
    RequireRecord(*LogicalFile, RecordNumber, RecordNumber, Source);
    return iReadFile(LogicalFile->OpenFile, LogicalFile->RecordLength,
                     RecordOffset(*LogicalFile, RecordNumber));
}

void iLwriteFile(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber, std::string_view Data) {
    constexpr const char* Source = "iLwriteFile";
    RequireDefined(LogicalFile, Source);
    // The text names the last record, not the one that was refused; reading names the refused one.
    RequireRecord(*LogicalFile, RecordNumber, LogicalFile->LastRecord, Source);
    const auto length = static_cast<std::int32_t>(Data.size());
    if (length != LogicalFile->RecordLength) {
        throw Error(
            IllegalLength, Source,
            "Illegal Data length for this record.  Size is: " + platform::LeadingBlankDecimal(length) +
                " and should be " + platform::LeadingBlankDecimal(LogicalFile->RecordLength));
    }
    iWriteFile(LogicalFile->OpenFile, Data, RecordOffset(*LogicalFile, RecordNumber));
}

void iGetRec(const LogicalFileHandle& LogicalFile, std::int32_t& RecordNumber) {
    const std::int32_t lock = LogicalLock(LogicalFile, 0);
    if (lock <= 0) {
        throw Error(
            LockRefused, "iGetRec",
            "Could not obtain a Lock on Record Zero of " + platform::Utf8FromBytes(LogicalFile->FileName));
    }
    RecordNumber = TakeFreeRecord(LogicalFile);
    ReleaseLock(lock);
}

std::int32_t TakeFreeRecord(const LogicalFileHandle& LogicalFile) {
    ByteString header = ReadRecordZero(Required(LogicalFile));
    std::int32_t recordNumber = iUnpack('L', header, ChainHeadPosition);
    if (recordNumber < 1) {
        recordNumber = CheckedAdd(iUnpack('L', header, HighWaterPosition), 1);
        iPack('L', header, recordNumber, HighWaterPosition);
    } else {
        const ByteString deleted = iLreadFile(LogicalFile, recordNumber);
        iPack('L', header, iUnpack('L', deleted, NextDeletedPosition), ChainHeadPosition);
    }
    iPack('L', header, CheckedAdd(iUnpack('L', header, ActiveCountPosition), 1), ActiveCountPosition);
    WriteRecordZero(*LogicalFile, header);
    return recordNumber;
}

void DelRec(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber) {
    ByteString header = ReadRecordZero(Required(LogicalFile));
    if (iUnpack('J', iLreadFile(LogicalFile, RecordNumber), RecordStatePosition) <= 0)
        throw Error(IllegalRecord, "DelRec", "Attempt to delete a deleted record");

    ByteString deleted = NulRecord(*LogicalFile);
    iPack('L', deleted, iUnpack('L', header, ChainHeadPosition), NextDeletedPosition);
    iLwriteFile(LogicalFile, RecordNumber, deleted);

    const std::int32_t count = iUnpack('L', header, ActiveCountPosition);
    iPack('L', header, RecordNumber, ChainHeadPosition);
    iPack('L', header, std::max(platform::CheckedSubtract(count, 1), 0), ActiveCountPosition);
    WriteRecordZero(*LogicalFile, header);
}

void InitFile(const LogicalFileHandle& LogicalFile, std::int32_t KeyLength, bool DuplicateKeys,
              std::int32_t BlockingFactor) {
    RequireDefined(LogicalFile, "iLwriteFile");  // the writing routine's name, kept as it is
    if (LogicalFile->FileType == KeyedFileType) {
        InitKeyedFile(*LogicalFile, KeyLength, DuplicateKeys, BlockingFactor);
    } else if (LogicalFile->FileType == PlainFileType) {
        InitPlainFile(LogicalFile);
    }
}

std::int32_t PhysicalLock(std::string_view, std::int32_t, std::int32_t) {
    return 0;
}

std::int32_t LogicalLock(const LogicalFileHandle& LogicalFile, std::int32_t RecordNumber) {
    const cLogicalFile& file = Required(LogicalFile);
    if (!file.OpenFile) throw Error(platform::ObjectNotSet);
    return PhysicalLock(file.OpenFile->Path, RecordOffset(file, RecordNumber), file.RecordLength);
}

std::int32_t ReleaseLock(std::int32_t) {
    return 0;
}

}  // namespace engine
