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

    std::int32_t Unpack(ByteString& OpCode, const ByteString& Data, std::int32_t Position);
    void Pack(ByteString& OpCode, ByteString& Data, std::int32_t Value, std::int32_t Position);
    void PackDate(const ByteString& OpCode, ByteString& Data, std::int32_t Position, platform::OleDate Value);
    platform::OleDate UnPackDate(const ByteString& OpCode, const ByteString& Data, std::int32_t Position);
    ByteString Crm(ByteString& Source);
    std::int32_t Max(std::int32_t Var1, std::int32_t Var2);
    std::int32_t Min(std::int32_t Var1, std::int32_t Var2);
    ByteString Ucm(ByteString& Source);
    void StrPos(std::int32_t& Location, const ByteString& Source, const ByteString& Target);
    ByteString Trun(const ByteString& Source, std::int32_t flgRemoveControlCharacters = 0);
    ByteString ReadFile(const OpenFileArgument& OpenFile, std::int32_t BytesToRead, std::int32_t Position = 0,
                        bool Orb = false);
    void WriteFile(const OpenFileArgument& OpenFile, const ByteString& Data, std::int32_t Position = 0,
                   bool Orb = false);
    ByteString BlockReadFile(const OpenFileArgument& OpenFile, std::int32_t BlockNumber, bool Orb = false);
    void BlockWriteFile(const OpenFileArgument& OpenFile, std::int32_t BlockNumber, const ByteString& Record,
                        bool Orb = false);
    std::shared_ptr<cOpenFile> OpenFile(ByteString& FileName);
    std::int32_t KLength(const LogicalFileArgument& LogicalFile, bool Orb = false);
    void CloseFile(const OpenFileArgument& FileName);
    void F();
    void H(const ByteString& Data);
    std::shared_ptr<cLogicalFile> LogicalOpen(const ByteString& FileName);
    ByteString LreadFile(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber, bool Orb = false);
    void LwriteFile(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber, const ByteString& Data,
                    bool Orb = false);
    std::int32_t KCount(const LogicalFileArgument& LogicalFile, bool Orb = false);
    cSystem& VantSys() const;
    platform::OleDate Now();
    std::int32_t PhysicalLock(const ByteString& FileName, std::int32_t Position, std::int32_t LockLength);
    std::int32_t LogicalLock(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber);
    std::int32_t ReleaseLock(std::int32_t LockNumber);
    void DelRec(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber, bool Orb = false);
    void GetRec(const LogicalFileArgument& LogicalFile, std::int32_t& RecordNumber, bool Orb = false);
    void InitFile(const LogicalFileArgument& LogicalFile, std::int32_t KeyLength = 0,
                  bool DuplicateKeys = false, std::int32_t BlockingFactor = 0, bool Orb = false);
    void KFind(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);
    void KLast(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);
    void KNext(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);
    void KPrev(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key, std::int32_t& Rec,
               bool Orb = false);
    std::vector<ByteString> Split(const ByteString& Expression, const ByteString& Delimiter = " ",
                                  std::int32_t Limit = -1, std::int32_t Compare = 0);
    std::int32_t Sys(std::int32_t Value);
    void Stma(const StmaValue& Var1, StmaValue& Var2, StmaValue& Var3, StmaValue& Var4, StmaValue& Var5,
              StmaValue& Var6);

  private:
    platform::WindowServices& mWindow;
};

/// The engine, or empty when start-up failed or has not run.
extern std::unique_ptr<cBusinessBasic> gEngine;

}  // namespace engine
