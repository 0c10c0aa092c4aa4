// The run-time state that the main window owns and the catalogue and export routines share: catalogue
// cursors, target database, the field descriptors and files of the table in hand, and the buffers of a
// running export.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/logical_file.h"
#include "platform/byte_string.h"
#include "platform/dao/database.h"

namespace catalogue {

/// The engine opcodes of an integer field of 1 to 4 bytes, by its length.
inline constexpr std::string_view UnsignedOpcodes = "BCDL";
inline constexpr std::string_view SignedOpcodes = "IJKL";

/// The descriptor of one catalogue field of the table being exported.
struct cInterface {
    std::u16string Name;        // the target column
    std::u16string DataType;    // one-letter type code, letter case matters
    std::int32_t Length = 0;    // bytes in the record
    std::int32_t Start = 0;     // 1-based position of the first byte
    std::int32_t TypeSpec = 0;  // decimals (I, U), bit number (B), character position (X)
};

/// Six slots 0 to 5: slot 1 the key file, slots 2 to 5 the data files; slot 0 is never filled.
using TableFileSlots = std::array<std::shared_ptr<engine::cLogicalFile>, 6>;

struct InterfaceState {
    std::shared_ptr<dao::Database> CatalogueDatabase;
    std::shared_ptr<dao::Recordset> FileDefinitionsRecordset;
    std::shared_ptr<dao::Recordset> LogicalMapRecordset;
    std::shared_ptr<dao::Recordset> IndexDefinitionRecordset;
    std::shared_ptr<dao::Recordset> LogicalIndexRecordset;
    std::shared_ptr<dao::Recordset> RelationsRecordset;

    std::shared_ptr<dao::Database> TargetDatabase;
    std::shared_ptr<dao::Recordset> TargetRecordset;

    std::vector<cInterface> FieldList;
    TableFileSlots TableFiles;

    bool CancelRequested = false;
    bool InvoiceRecordsOver512 = false;
    bool EnforceReferentialIntegrity = false;

    std::int32_t TotalRecords = 0;
    platform::ByteString CurrentKey;
    platform::ByteString KeyBuffer;
    platform::ByteString CurrentRecord;
};

}  // namespace catalogue
