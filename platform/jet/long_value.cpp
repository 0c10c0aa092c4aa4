#include "platform/jet/long_value.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/jet/bytes.h"

namespace jet {

namespace {

constexpr std::size_t FirstPieceAt = 4;
constexpr std::size_t StampAt = 8;
constexpr std::size_t NextPieceLength = 4;

constexpr std::uint32_t InlineKind = 0x80000000;
constexpr std::uint32_t SingleKind = 0x40000000;

void StoreReference(std::uint8_t* reference, std::uint32_t kindAndLength, RowPointer first,
                    std::uint32_t stamp) {
    StoreU32(reference, kindAndLength);
    StoreU32(reference + FirstPieceAt, first.Dword());
    StoreU32(reference + StampAt, stamp);
}

/// The row of a long-value page. The page stays in memory as long as the result.
struct Piece {
    DataPage Page;
    std::span<const std::uint8_t> Bytes;
};

Piece ReadPiece(PageFile& file, RowPointer row) {
    DataPage page(file, row.Page);
    if (page.Owner() != LongValueOwner || page.Slot(row.Row).IsDeleted()) throw file.Damaged();
    const auto bytes = page.Row(row.Row);
    return {std::move(page), bytes};
}

std::vector<std::uint8_t> ReadChain(PageFile& file, RowPointer row, std::size_t length) {
    std::vector<std::uint8_t> value;
    while (value.size() < length) {
        const Piece piece = ReadPiece(file, row);
        if (piece.Bytes.size() <= NextPieceLength) throw file.Damaged();
        const auto bytes = piece.Bytes.subspan(NextPieceLength);
        value.insert(value.end(), bytes.begin(), bytes.end());
        const std::uint32_t next = LoadU32(piece.Bytes.data());
        if (next == 0) break;
        row = RowPointer::FromDword(next);
    }
    if (value.size() < length) throw file.Damaged();
    value.resize(length);
    return value;
}

}  // namespace

void StoreInlineReference(std::uint8_t* reference, std::size_t length) {
    StoreReference(reference, InlineKind | static_cast<std::uint32_t>(length), {}, 0);
}

std::vector<std::uint8_t> ReadLongValue(PageFile& file, std::span<const std::uint8_t> reference) {
    if (reference.size() < LongValueReferenceLength) throw file.Damaged();
    const std::uint32_t kindAndLength = LoadU32(reference.data());
    const std::size_t length = kindAndLength & MaxLongValueLength;
    const RowPointer first = RowPointer::FromDword(LoadU32(&reference[FirstPieceAt]));
    if (length > std::uint64_t{file.PageCount()} * file.PageSize()) throw file.Damaged();

    if ((kindAndLength & InlineKind) != 0) {
        const auto bytes = reference.subspan(LongValueReferenceLength);
        if (bytes.size() < length) throw file.Damaged();
        return {bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)};
    }
    if (length == 0) return {};
    if ((kindAndLength & SingleKind) == 0) return ReadChain(file, first, length);

    const Piece piece = ReadPiece(file, first);
    if (piece.Bytes.size() < length) throw file.Damaged();
    return {piece.Bytes.begin(), piece.Bytes.begin() + static_cast<std::ptrdiff_t>(length)};
}

std::uint32_t LongValueWriter::MostNewPages(const Layout& format, std::size_t length) {
    const std::size_t pieces = length / (format.MaxLongValuePiece - NextPieceLength) + 1;
    // A chain of many pages may also need bitmap pages for the column's map and the global one.
    const std::size_t bitmaps = 2 * (pieces / format.PagesPerBitmap() + 1);
    return static_cast<std::uint32_t>(pieces + bitmaps) + RowSpace::MostNewPages;
}

void LongValueWriter::Write(std::span<const std::uint8_t> value, std::uint8_t* reference) {
    if (value.size() <= mFile.Format().MaxLongValuePiece) {
        WriteSingle(value, reference);
    } else {
        WriteChain(value, reference);
    }
}

void LongValueWriter::WriteSingle(std::span<const std::uint8_t> value, std::uint8_t* reference) {
    DataPage page = mSpace.PageFor(value.size());
    const std::uint8_t row = page.Append(value);
    StoreReference(reference, SingleKind | static_cast<std::uint32_t>(value.size()), {page.Number(), row}, 0);
}

void LongValueWriter::WriteChain(std::span<const std::uint8_t> value, std::uint8_t* reference) {
    const std::size_t pieceData = mFile.Format().MaxLongValuePiece - NextPieceLength;
    std::optional<DataPage> page = mSpace.AddFullPage();
    // The first page's number makes a stamp that no other chain has.
    const std::uint32_t stamp = page->Number();
    page->SetStamp(stamp);
    StoreReference(reference, static_cast<std::uint32_t>(value.size()), {stamp, 0}, stamp);

    for (std::size_t at = 0; at < value.size(); at += pieceData) {
        const auto part = value.subspan(at, std::min(pieceData, value.size() - at));
        std::optional<DataPage> next;
        if (at + pieceData < value.size()) next = mSpace.AddFullPage();
        mPiece.resize(NextPieceLength + part.size());
        StoreU32(mPiece.data(), next ? RowPointer{next->Number(), 0}.Dword() : 0);
        std::ranges::copy(part, &mPiece[NextPieceLength]);
        page->Append(mPiece);
        page = std::move(next);
    }
}

}  // namespace jet
