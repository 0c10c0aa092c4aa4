#include "platform/jet/row_writer.h"

namespace jet {

RowWriter::RowWriter(PageFile& file, const TableDef& table)
    : mFile(file), mEncoder(table), mSpace(file, table.OwnedMap, table.FreeMap, table.Page) {
    for (const LongValueMaps& maps : table.LongValues) {
        mLongValues.try_emplace(maps.ColumnNumber, file, maps);
    }
}

std::uint32_t RowWriter::MostNewPages() const {
    std::uint32_t pages = RowSpace::MostNewPages;
    for (const RowEncoder::LongPart& part : mEncoder.LongParts()) {
        pages += LongValueWriter::MostNewPages(mFile.Format(), part.Length);
    }
    return pages;
}

RowPointer RowWriter::Write() {
    for (const RowEncoder::LongPart& part : mEncoder.LongParts()) {
        const auto writer = mLongValues.find(part.ColumnNumber);
        if (writer == mLongValues.end()) throw mFile.Damaged();
        writer->second.Write(mEncoder.LongBytes(part), &mEncoder.Row()[part.ReferenceAt]);
    }
    DataPage page = mSpace.PageFor(mEncoder.Row().size());
    return {page.Number(), page.Append(mEncoder.Row())};
}

}  // namespace jet
