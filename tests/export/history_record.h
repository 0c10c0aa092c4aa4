// Invoice history records as the detail expansion reads them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/built_ins.h"
#include "platform/byte_string.h"
#include "tests/catalogue/site_files.h"

namespace test {

/// Text in radix-40, padded with blanks to that many bytes.
inline ByteString Compressed(std::string text, std::size_t bytes) {
    text.resize(bytes / 2 * 3, ' ');
    return engine::Crm(text);
}

/// An invoice line of 44 bytes: its type, and bytes from its third one on.
inline ByteString InvoiceLine(const std::string& type, const ByteString& rest) {
    ByteString line = Compressed(type, 2) + rest;
    line.resize(44, '\x11');
    return line;
}

struct HistoryRecord {
    std::int32_t Sequence = 1;
    std::int32_t Link = 1;
    std::int32_t Invoice = 0;
    std::int32_t Type = 1;
    std::string Description = {};
    std::vector<ByteString> Lines = {};
    std::size_t Length = 292;  // three lines

    ByteString Bytes() const {
        ByteString record(Length, '\0');
        record.replace(85, 20, Compressed(Description, 20));
        record.replace(105, 4, BigEndian(Invoice, 4));
        record.replace(109, 3, BigEndian(Link, 3));
        record.replace(114, 1, BigEndian(Sequence, 1));
        record.replace(122, 1, BigEndian(Type, 1));
        record.replace(145, 1, BigEndian(static_cast<std::int32_t>(Lines.size()), 1));
        std::size_t place = 160;
        for (const ByteString& line : Lines) {
            record.replace(place, line.size(), line);
            place += line.size();
        }
        return record;
    }
};

}  // namespace test
