#include "export/supersession.h"

#include "engine/built_ins.h"
#include "engine/business_basic.h"

namespace exporting {

using platform::ByteString;
using platform::Mid;
using platform::Put;

namespace {

// Of a key.
constexpr std::int32_t MarkPosition = 15;
constexpr std::int32_t PartPosition = 17;
constexpr std::int32_t PartLength = 10;
constexpr std::string_view GroupMark = "Z";
constexpr int FurtherKeysOfGroup = 2;

// The part number of a group's first key moves behind the key; zero bytes take its place there.
constexpr std::size_t ClearedLength = 14;

constexpr std::size_t BlankCharacters = 45;

}  // namespace

void FoldSupersession(catalogue::InterfaceState& state, const std::shared_ptr<engine::cLogicalFile>& keyFile,
                      std::int32_t& Rec) {
    ByteString& record = state.CurrentRecord;
    if (Mid(state.CurrentKey, MarkPosition, 1) != GroupMark) {
        ByteString blanks(BlankCharacters, ' ');
        record += engine::Crm(blanks);
        return;
    }
    record += Mid(state.CurrentKey, PartPosition, PartLength);
    Put(record, PartPosition, ByteString(ClearedLength, '\0'));
    for (int key = 0; key < FurtherKeysOfGroup; ++key) {
        engine::gEngine->KNext(keyFile, state.KeyBuffer, state.CurrentKey, Rec, false);
        record += Mid(state.CurrentKey, PartPosition, PartLength);
    }
}

}  // namespace exporting
