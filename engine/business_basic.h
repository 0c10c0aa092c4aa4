// cBusinessBasic: the one object through which the rest of the system uses the runtime's files. It holds no
// data of its own; every operation converts its arguments and calls the routine that does the work. The
// operations stand in the order of the runtime's interface.
//
// Byte positions are 1-based, file offsets 0-based, stored numbers big-endian. Arguments taken by non-const
// reference are written back, as each operation says. Orb (a request for a remote broker) is accepted
// everywhere and has no effect.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

#include "engine/dates.h"
#include "engine/logical_file.h"
#include "engine/open_file.h"
#include "engine/system.h"
#include "platform/byte_string.h"
#include "platform/ole_date.h"
#include "platform/window_services.h"

namespace engine {

/// A logical file given as its handle (which may be empty) or as its name.
using LogicalFileArgument = std::variant<std::shared_ptr<cLogicalFile>, ByteString>;

/// A physical file given as its handle (which may be empty) or as its name.
using OpenFileArgument = std::variant<std::shared_ptr<cOpenFile>, ByteString>;

class cBusinessBasic {
  public:
    /// Starts the engine on the site of gSystem: checks that the link share answers, finds the workstation's
    /// name, address and terminal, loads the links. Raises 91 for an unusable site (after a message box when
    /// the share does not answer, without one when `ttymap` cannot be opened); the file error when LINKSFILE
    /// can be neither opened nor created.
    explicit cBusinessBasic(platform::WindowServices& window);

    /// Releases open files, links, the site and the logical files, in this order.
    ~cBusinessBasic();

    cBusinessBasic(const cBusinessBasic&) = delete;
    cBusinessBasic& operator=(const cBusinessBasic&) = delete;

    /// A number or date at 1-based Position of Data, read or written: as the routines of these names in
    /// field_codec.h and dates.h, which tell the opcodes and errors.
    std::int32_t Unpack(ByteString& OpCode, const ByteString& Data, std::int32_t Position);
    void Pack(ByteString& OpCode, ByteString& Data, std::int32_t Value, std::int32_t Position);
    void PackDate(const ByteString& OpCode, ByteString& Data, std::int32_t Position, platform::OleDate Value);
    platform::OleDate UnPackDate(const ByteString& OpCode, const ByteString& Data, std::int32_t Position);

    /// Texts, as the routines of these names in built_ins.h; Max and Min give the greater and the smaller
    /// number, StrPos writes the position to Location.
    ByteString Crm(ByteString& Source);
    std::int32_t Max(std::int32_t Var1, std::int32_t Var2);
    std::int32_t Min(std::int32_t Var1, std::int32_t Var2);
    ByteString Ucm(ByteString& Source);
    void StrPos(std::int32_t& Location, const ByteString& Source, const ByteString& Target);
    ByteString Trun(const ByteString& Source, std::int32_t flgRemoveControlCharacters = 0);

    /// Bytes and blocks of 512 bytes of a physical file, as iReadFile and its neighbours in open_file.h; a
    /// name is opened first.
    ByteString ReadFile(const OpenFileArgument& OpenFile, std::int32_t BytesToRead, std::int32_t Position = 0,
                        bool Orb = false);
    void WriteFile(const OpenFileArgument& OpenFile, const ByteString& Data, std::int32_t Position = 0,
                   bool Orb = false);
    ByteString BlockReadFile(const OpenFileArgument& OpenFile, std::int32_t BlockNumber, bool Orb = false);
    void BlockWriteFile(const OpenFileArgument& OpenFile, std::int32_t BlockNumber, const ByteString& Record,
                        bool Orb = false);
    std::shared_ptr<cOpenFile> OpenFile(ByteString& FileName);

    /// As KLength in keyed_index.h. Every operation on a logical file opens a name first and raises -10
    /// "LogicalOpen" when there is no such file.
    std::int32_t KLength(const LogicalFileArgument& LogicalFile, bool Orb = false);

    /// Closes a physical file; a name that is not open is opened for it. Raises 91 when there is no such
    /// file.
    void CloseFile(const OpenFileArgument& FileName);

    /// Does nothing.
    void F();

    /// Shows HexDump of built_ins.h in the hex display.
    void H(const ByteString& Data);

    /// As iLogicalOpen in logical_file.h, and records of a logical file, as iLreadFile and iLwriteFile in
    /// records.h.
    std::shared_ptr<cLogicalFile> LogicalOpen(const ByteString& FileName);
    ByteString LreadFile(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber, bool Orb = false);
    void LwriteFile(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber, const ByteString& Data,
                    bool Orb = false);

    /// As KCount in index_traversal.h.
    std::int32_t KCount(const LogicalFileArgument& LogicalFile, bool Orb = false);

    /// The site. Raises 91 without one.
    cSystem& VantSys() const;

    /// The workstation's local date and time.
    platform::OleDate Now();

    /// Locks, which are never granted, free records and new files: as the routines of these names in
    /// records.h, GetRec as iGetRec.
    std::int32_t PhysicalLock(const ByteString& FileName, std::int32_t Position, std::int32_t LockLength);
    std::int32_t LogicalLock(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber);
    std::int32_t ReleaseLock(std::int32_t LockNumber);
    void DelRec(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber, bool Orb = false);
    void GetRec(const LogicalFileArgument& LogicalFile, std::int32_t& RecordNumber, bool Orb = false);
    void InitFile(const LogicalFileArgument& LogicalFile, std::int32_t KeyLength = 0,
                  bool DuplicateKeys = false, std::int32_t BlockingFactor = 0, bool Orb = false);

    /// Places and steps in a keyed index, as the routines of these names in keyed_index.h and
    /// index_traversal.h.
    void KFind(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);
    void KLast(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);
    void KNext(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);
    void KPrev(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);

    /// As Split in built_ins.h.
    std::vector<ByteString> Split(const ByteString& Expression, const ByteString& Delimiter = " ",
                                  std::int32_t Limit = -1, std::int32_t Compare = 0);

    /// As Sys and Stma in dates.h.
    std::int32_t Sys(std::int32_t Value);
    void Stma(const StmaValue& Var1, StmaValue& Var2, StmaValue& Var3, StmaValue& Var4, StmaValue& Var5,
              StmaValue& Var6);

  private:
    platform::WindowServices& mWindow;
};

/// The engine, or empty when start-up failed or has not run.
extern std::unique_ptr<cBusinessBasic> gEngine;

}  // namespace engine
