#include "platform/jet/data_page.h"

#include <algorithm>
#include <utility>

#include "platform/jet/bytes.h"

namespace jet {

namespace {

constexpr std::size_t StampAt = 8;

}  // namespace

DataPage::DataPage(PageFile& file, PageHandle page)
    : mFile(&file), mPage(std::move(page)), mRowCount(LoadU16(mPage.Data() + file.Format().RowCountAt)) {
    if (EntryAt(mRowCount) > file.PageSize()) throw file.Damaged();
}

DataPage::DataPage(PageFile& file, std::uint32_t page) : DataPage(file, file.Read(page, PageType::Data)) {}

DataPage DataPage::Make(PageFile& file, std::uint32_t page, std::uint32_t owner) {
    PageHandle handle = file.MakeNew(page, PageType::Data);
    std::uint8_t* bytes = handle.Change();
    StoreU32(bytes + PageOwner, owner);
    StoreU16(bytes + PageFreeBytes, static_cast<std::uint16_t>(file.PageSize() - file.Format().RowTableAt));
    return {file, std::move(handle)};
}

std::uint32_t DataPage::Owner() const {
    return LoadU32(mPage.Data() + PageOwner);
}

RowSlot DataPage::Slot(unsigned row) const {
    if (row >= mRowCount) throw mFile->Damaged();
    const std::uint16_t entry = LoadU16(mPage.Data() + EntryAt(row));
    const std::size_t start = entry & RowStartMask;
    const std::size_t end =
        row == 0 ? mFile->PageSize() : LoadU16(mPage.Data() + EntryAt(row - 1)) & RowStartMask;
    if (start < EntryAt(mRowCount) || start > end || end > mFile->PageSize()) throw mFile->Damaged();
    return {static_cast<std::uint16_t>(entry & RowDeleted), static_cast<std::uint16_t>(start),
            static_cast<std::uint16_t>(end - start)};
}

std::span<const std::uint8_t> DataPage::Row(unsigned row) const {
    const RowSlot slot = Slot(row);
    return {mPage.Data() + slot.Start, slot.Length};
}

std::span<std::uint8_t> DataPage::ChangeRow(unsigned row) {
    const RowSlot slot = Slot(row);
    return {mPage.Change() + slot.Start, slot.Length};
}

std::size_t DataPage::LowestRow() const {
    return mRowCount == 0 ? mFile->PageSize() : Slot(mRowCount - 1).Start;
}

bool DataPage::HasRoom(std::size_t length) const {
    return mRowCount < MaxRowsPerPage && EntryAt(mRowCount + 1) + length <= LowestRow();
}

std::uint8_t DataPage::Append(std::span<const std::uint8_t> row) {
    const std::size_t start = LowestRow() - row.size();
    std::uint8_t* bytes = mPage.Change();
    std::ranges::copy(row, bytes + start);
    StoreU16(bytes + EntryAt(mRowCount), static_cast<std::uint16_t>(start));
    ++mRowCount;
    StoreU16(bytes + mFile->Format().RowCountAt, static_cast<std::uint16_t>(mRowCount));
    StoreU16(bytes + PageFreeBytes, static_cast<std::uint16_t>(start - EntryAt(mRowCount)));
    return static_cast<std::uint8_t>(mRowCount - 1);
}

void DataPage::RemoveLast() {
    ResizeRow(mRowCount - 1, 0);
    --mRowCount;
    std::uint8_t* bytes = mPage.Change();
    StoreU16(bytes + EntryAt(mRowCount), 0);
    StoreU16(bytes + mFile->Format().RowCountAt, static_cast<std::uint16_t>(mRowCount));
    StoreU16(bytes + PageFreeBytes, static_cast<std::uint16_t>(LowestRow() - EntryAt(mRowCount)));
}

bool DataPage::ResizeRow(unsigned row, std::size_t length) {
    const RowSlot slot = Slot(row);
    const std::size_t lowest = LowestRow();
    if (length > slot.Length && lowest - EntryAt(mRowCount) < length - slot.Length) return false;

    // Rows with higher slots stand below this one; they move together with the bytes that the row keeps.
    const std::size_t kept = std::min<std::size_t>(slot.Length, length);
    const std::size_t newStart = slot.Start + slot.Length - length;
    const std::size_t newLowest = lowest + slot.Length - length;
    std::uint8_t* bytes = mPage.Change();
    std::memmove(bytes + newLowest, bytes + lowest, slot.Start + kept - lowest);
    std::fill(bytes + newStart + kept, bytes + newStart + length, std::uint8_t{0});
    for (unsigned i = row; i < mRowCount; ++i) {
        const std::uint16_t entry = LoadU16(bytes + EntryAt(i));
        StoreU16(bytes + EntryAt(i), static_cast<std::uint16_t>(entry + slot.Length - length));
    }
    StoreU16(bytes + PageFreeBytes, static_cast<std::uint16_t>(newLowest - EntryAt(mRowCount)));
    return true;
}

void DataPage::SetStamp(std::uint32_t stamp) {
    StoreU32(mPage.Change() + StampAt, stamp);
}

}  // namespace jet
