#include "platform/jet/header_page.h"

#include <algorithm>
#include <numeric>
#include <string_view>
#include <vector>

#include "platform/jet/bytes.h"

namespace jet {

namespace {

constexpr std::size_t EngineNameAt = 0x04;
constexpr std::string_view EngineName("Standard Jet DB\0", 16);
constexpr std::size_t VersionAt = 0x14;

constexpr std::size_t MaskAt = 0x18;
constexpr std::size_t Jet3MaskEnd = 0x96;
constexpr std::size_t Jet4MaskEnd = 0x98;
constexpr std::array<std::uint8_t, 4> MaskKey{0xC7, 0xDA, 0x39, 0x6B};

// Inside the mask.
constexpr std::size_t FreePagesMapAt = 0x18;
constexpr std::size_t SecondMapAt = 0x1C;
constexpr std::size_t SystemTablesAt = 0x20;
constexpr std::size_t CodePageAt = 0x3C;
constexpr std::size_t EncryptionKeyAt = 0x3E;
constexpr std::size_t PasswordAt = 0x42;
constexpr std::size_t PasswordRepeats = 10;
constexpr std::size_t BuildAt = 0x6A;
constexpr std::size_t SortOrderAt = 0x6E;
constexpr std::size_t CreationDateAt = 0x72;

// Behind the mask.
constexpr std::size_t ConstantAt = 0x98;
constexpr std::uint32_t ConstantValue = 1620;
constexpr std::size_t EngineVersionAt = 0x9C;
constexpr std::string_view EngineVersion = "4.0";
constexpr std::size_t CommitBytesAt = 0xE00;
constexpr std::uint16_t FreshCommitExclusive = 0x0101;
constexpr std::uint16_t FreshCommitShared = 0x0100;

// The security ids of every object are tied to this pair of build and date; see the header file.
constexpr std::uint16_t BuildNumber = 9756;
constexpr std::uint64_t CreationDate = 0x40E4AB3E3BD3853E;  // 21 November 2015, 22:40:30.980
constexpr std::uint32_t CreationDay = 42329;

/// XORs bytes with the RC4 key stream, its first byte upon the first of them.
void ApplyMask(std::span<std::uint8_t> bytes) {
    std::array<std::uint8_t, 256> state;
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + MaskKey[i % MaskKey.size()]);
        std::swap(state[i], state[j]);
    }
    std::uint8_t i = 0;
    j = 0;
    for (std::uint8_t& byte : bytes) {
        j = static_cast<std::uint8_t>(j + state[++i]);
        std::swap(state[i], state[j]);
        byte ^= state[static_cast<std::uint8_t>(state[i] + state[j])];
    }
}

bool HasEngineName(std::span<const std::uint8_t> head) {
    return std::equal(EngineName.begin(), EngineName.end(), head.begin() + EngineNameAt,
                      [](char a, std::uint8_t b) { return static_cast<std::uint8_t>(a) == b; });
}

void CopyText(std::uint8_t* bytes, std::string_view text) {
    std::ranges::transform(text, bytes, [](char c) { return static_cast<std::uint8_t>(c); });
}

}  // namespace

const Layout* RecogniseHeader(std::span<const std::uint8_t> head) {
    if (head[0] != static_cast<std::uint8_t>(PageType::Header) || head[1] != PageMark) return nullptr;
    if (!HasEngineName(head) || head[VersionAt] > static_cast<std::uint8_t>(Version::Jet4)) return nullptr;

    const auto version = static_cast<Version>(head[VersionAt]);
    const std::size_t maskEnd = version == Version::Jet3 ? Jet3MaskEnd : Jet4MaskEnd;
    std::vector<std::uint8_t> plain(head.begin(), head.begin() + HeaderHeadLength);
    ApplyMask(std::span(plain).subspan(MaskAt, maskEnd - MaskAt));
    if (LoadU32(&plain[EncryptionKeyAt]) != 0) return nullptr;
    return &LayoutOf(version);
}

void BuildHeader(std::span<std::uint8_t> page) {
    page[0] = static_cast<std::uint8_t>(PageType::Header);
    page[1] = PageMark;
    CopyText(&page[EngineNameAt], EngineName);
    page[VersionAt] = static_cast<std::uint8_t>(Version::Jet4);

    StoreU32(&page[FreePagesMapAt], RowPointer{GlobalMapPage, 0}.Dword());
    StoreU32(&page[SecondMapAt], RowPointer{GlobalMapPage, 1}.Dword());
    std::size_t at = SystemTablesAt;
    for (const std::uint32_t table : {ObjectsPage, AcesPage, QueriesPage, RelationshipsPage}) {
        StoreU32(&page[at], table);
        at += sizeof table;
    }
    StoreU16(&page[CodePageAt], LatinCodePage);
    // No password looks like the bare mask of a password: the day of creation, repeated.
    for (std::size_t i = 0; i < PasswordRepeats; ++i) StoreU32(&page[PasswordAt + 4 * i], CreationDay);
    StoreU16(&page[BuildAt], BuildNumber);
    StoreU32(&page[SortOrderAt], GeneralSortOrder);
    StoreU64(&page[CreationDateAt], CreationDate);
    ApplyMask(page.subspan(MaskAt, Jet4MaskEnd - MaskAt));

    StoreU32(&page[ConstantAt], ConstantValue);
    CopyText(&page[EngineVersionAt], EngineVersion);
    StoreU16(&page[CommitBytesAt], FreshCommitExclusive);
    for (std::size_t commit = CommitBytesAt + 2; commit < page.size(); commit += 2) {
        StoreU16(&page[commit], FreshCommitShared);
    }
}

}  // namespace jet
