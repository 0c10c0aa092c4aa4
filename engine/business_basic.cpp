// Start-up and end of the engine, and the forwarding of its operations. A remote broker can never be
// connected, so Orb ends here.

#include "engine/business_basic.h"

#include <utility>

#include "engine/built_ins.h"
#include "engine/dates.h"
#include "engine/field_codec.h"
#include "engine/index_traversal.h"
#include "engine/keyed_index.h"
#include "engine/links.h"
#include "engine/recorded_error.h"
#include "engine/records.h"
#include "engine/terminal_map.h"
#include "platform/code_page.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/numbers.h"
#include "platform/site.h"

namespace engine {

using platform::Error;

namespace {

constexpr int NotFound = -10;

void RequireShare(const ByteString& root, platform::WindowServices& window) {
    if (platform::ShareAnswers(root)) return;
    platform::Message message;
    message.Text = "You are attempting to connect to: " + platform::Utf8FromBytes(root) +
                   " and this shows to be an invalid network share";
    message.Title = "Connection Error";
    message.SystemModal = true;
    window.ShowMessage(message);
    throw Error(platform::ObjectNotSet, "", "");
}

/// The address of a computer in dotted form; 255.255.255.255 when it has none.
ByteString DottedAddress(const ByteString& computerName) {
    constexpr std::uint32_t NoAddress = 0xFFFFFFFF;
    constexpr std::int32_t Octets = 4;
    ByteString octets(Octets, '\0');
    const std::uint32_t address = platform::HostAddress(computerName).value_or(NoAddress);
    iPack('L', octets, static_cast<std::int32_t>(address), 1);
    ByteString dotted = platform::PlainDecimal(iUnpack('B', octets, 1));
    for (std::int32_t i = 2; i <= Octets; ++i)
        dotted.append(".").append(platform::PlainDecimal(iUnpack('B', octets, i)));
    return dotted;
}

/// The lines of ttymap. One that cannot be opened is recorded as the error it is and raised as 91.
std::vector<std::string> TerminalMapLines(const cSystem& system) {
    const auto lines = platform::ReadLines(system.LinkShare() + "ttymap");
    if (lines) return *lines;
    RecordError(Error(NotFound, "kSWDataEngine_Initialization",
                      "Terminal File 'ttymap' not found on drive \\\\" +
                          platform::Utf8FromBytes(system.mUNCDrive) + "\\KSTLLNK"));
    throw Error(platform::ObjectNotSet);
}

std::shared_ptr<cLogicalFile> Resolved(const LogicalFileArgument& argument) {
    if (const auto* handle = std::get_if<std::shared_ptr<cLogicalFile>>(&argument)) return *handle;
    const ByteString& name = std::get<ByteString>(argument);
    auto file = iLogicalOpen(name);
    if (!file)
        throw Error(NotFound, "LogicalOpen", "File not Found: \"" + platform::Utf8FromBytes(name) + "\"");
    return file;
}

/// Empty for a name that cannot be opened; the routines report it.
std::shared_ptr<cOpenFile> Resolved(const OpenFileArgument& argument) {
    if (const auto* handle = std::get_if<std::shared_ptr<cOpenFile>>(&argument)) return *handle;
    ByteString name = std::get<ByteString>(argument);
    return iOpenFile(name);
}

}  // namespace

cBusinessBasic::cBusinessBasic(platform::WindowServices& window) : mWindow(window) {
    gCodeChars = StandardCodeChars;
    cSystem& system = CurrentSystem();
    RequireShare(system.LinkShare(), window);
    system.ComputerName = WithoutTail(platform::ComputerName());
    system.IP = DottedAddress(system.ComputerName);
    system.TerminalID.assign(1, '0');
    const auto lines = TerminalMapLines(system);
    if (auto terminal = FindTerminal(lines, {system.ComputerName, platform::HostName()}, system.IP))
        system.TerminalID = std::move(*terminal);
    gLinks = std::make_unique<cLinks>();
    gOpenFiles = std::make_unique<cOpenFiles>();
    gLogicalFiles = std::make_unique<cLogicalFiles>();
}

cBusinessBasic::~cBusinessBasic() {
    gOpenFiles.reset();
    gLinks.reset();
    gSystem.reset();
    gLogicalFiles.reset();
}

std::int32_t cBusinessBasic::Unpack(ByteString& OpCode, const ByteString& Data, std::int32_t Position) {
    return engine::Unpack(OpCode, Data, Position);
}

void cBusinessBasic::Pack(ByteString& OpCode, ByteString& Data, std::int32_t Value, std::int32_t Position) {
    engine::Pack(OpCode, Data, Value, Position);
}

void cBusinessBasic::PackDate(const ByteString& OpCode, ByteString& Data, std::int32_t Position,
                              platform::OleDate Value) {
    engine::PackDate(OpCode, Data, Position, Value);
}

platform::OleDate cBusinessBasic::UnPackDate(const ByteString& OpCode, const ByteString& Data,
                                             std::int32_t Position) {
    return engine::UnPackDate(OpCode, Data, Position);
}

ByteString cBusinessBasic::Crm(ByteString& Source) {
    return engine::Crm(Source);
}

std::int32_t cBusinessBasic::Max(std::int32_t Var1, std::int32_t Var2) {
    return Var1 > Var2 ? Var1 : Var2;
}

std::int32_t cBusinessBasic::Min(std::int32_t Var1, std::int32_t Var2) {
    return Var1 < Var2 ? Var1 : Var2;
}

ByteString cBusinessBasic::Ucm(ByteString& Source) {
    return engine::Ucm(Source);
}

void cBusinessBasic::StrPos(std::int32_t& Location, const ByteString& Source, const ByteString& Target) {
    Location = engine::StrPos(Source, Target);
}

ByteString cBusinessBasic::Trun(const ByteString& Source, std::int32_t flgRemoveControlCharacters) {
    return engine::Trun(Source, flgRemoveControlCharacters);
}

ByteString cBusinessBasic::ReadFile(const OpenFileArgument& OpenFile, std::int32_t BytesToRead,
                                    std::int32_t Position, bool) {
    return iReadFile(Resolved(OpenFile), BytesToRead, Position);
}

void cBusinessBasic::WriteFile(const OpenFileArgument& OpenFile, const ByteString& Data,
                               std::int32_t Position, bool) {
    iWriteFile(Resolved(OpenFile), Data, Position);
}

ByteString cBusinessBasic::BlockReadFile(const OpenFileArgument& OpenFile, std::int32_t BlockNumber, bool) {
    return iBlockReadFile(Resolved(OpenFile), BlockNumber);
}

void cBusinessBasic::BlockWriteFile(const OpenFileArgument& OpenFile, std::int32_t BlockNumber,
                                    const ByteString& Record, bool) {
    iBlockWriteFile(Resolved(OpenFile), BlockNumber, Record);
}

std::shared_ptr<cOpenFile> cBusinessBasic::OpenFile(ByteString& FileName) {
    return iOpenFile(FileName);
}

std::int32_t cBusinessBasic::KLength(const LogicalFileArgument& LogicalFile, bool) {
    return engine::KLength(Resolved(LogicalFile));
}

void cBusinessBasic::CloseFile(const OpenFileArgument& FileName) {
    const auto file = Resolved(FileName);
    if (!file) throw Error(platform::ObjectNotSet);
    iCloseFile(file->Path);
}

void cBusinessBasic::F() {}

void cBusinessBasic::H(const ByteString& Data) {
    mWindow.ShowHexDisplay(platform::Utf8FromBytes(HexDump(Data)));
}

std::shared_ptr<cLogicalFile> cBusinessBasic::LogicalOpen(const ByteString& FileName) {
    return iLogicalOpen(FileName);
}

ByteString cBusinessBasic::LreadFile(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber,
                                     bool) {
    return iLreadFile(Resolved(LogicalFile), RecordNumber);
}

void cBusinessBasic::LwriteFile(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber,
                                const ByteString& Data, bool) {
    iLwriteFile(Resolved(LogicalFile), RecordNumber, Data);
}

std::int32_t cBusinessBasic::KCount(const LogicalFileArgument& LogicalFile, bool) {
    return engine::KCount(Resolved(LogicalFile), mWindow);
}

cSystem& cBusinessBasic::VantSys() const {
    return CurrentSystem();
}

platform::OleDate cBusinessBasic::Now() {
    return engine::Now();
}

std::int32_t cBusinessBasic::PhysicalLock(const ByteString& FileName, std::int32_t Position,
                                          std::int32_t LockLength) {
    return engine::PhysicalLock(FileName, Position, LockLength);
}

std::int32_t cBusinessBasic::LogicalLock(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber) {
    return engine::LogicalLock(Resolved(LogicalFile), RecordNumber);
}

std::int32_t cBusinessBasic::ReleaseLock(std::int32_t LockNumber) {
    return engine::ReleaseLock(LockNumber);
}

void cBusinessBasic::DelRec(const LogicalFileArgument& LogicalFile, std::int32_t RecordNumber, bool) {
    engine::DelRec(Resolved(LogicalFile), RecordNumber);
}

void cBusinessBasic::GetRec(const LogicalFileArgument& LogicalFile, std::int32_t& RecordNumber, bool) {
    iGetRec(Resolved(LogicalFile), RecordNumber);
}

void cBusinessBasic::InitFile(const LogicalFileArgument& LogicalFile, std::int32_t KeyLength,
                              bool DuplicateKeys, std::int32_t BlockingFactor, bool) {
    engine::InitFile(Resolved(LogicalFile), KeyLength, DuplicateKeys, BlockingFactor);
}

void cBusinessBasic::KFind(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key,
                           std::int32_t& Rec, bool) {
    engine::KFind(Resolved(LogicalFile), Buff, Key, Rec, mWindow);
}

void cBusinessBasic::KLast(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key,
                           std::int32_t& Rec, bool) {
    engine::KLast(Resolved(LogicalFile), Buff, Key, Rec);
}

void cBusinessBasic::KNext(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key,
                           std::int32_t& Rec, bool) {
    engine::KNext(Resolved(LogicalFile), Buff, Key, Rec);
}

void cBusinessBasic::KPrev(const LogicalFileArgument& LogicalFile, ByteString& Buff, ByteString& Key,
                           std::int32_t& Rec, bool) {
    engine::KPrev(Resolved(LogicalFile), Buff, Key, Rec);
}

std::vector<ByteString> cBusinessBasic::Split(const ByteString& Expression, const ByteString& Delimiter,
                                              std::int32_t Limit, std::int32_t Compare) {
    return engine::Split(Expression, Delimiter, Limit, Compare);
}

std::int32_t cBusinessBasic::Sys(std::int32_t Value) {
    return engine::Sys(Value);
}

void cBusinessBasic::Stma(const StmaValue& Var1, StmaValue& Var2, StmaValue& Var3, StmaValue& Var4,
                          StmaValue& Var5, StmaValue& Var6) {
    engine::Stma(Var1, Var2, Var3, Var4, Var5, Var6);
}

}  // namespace engine
