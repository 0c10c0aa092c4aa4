// Invoice history records as the detail expansion reads them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "engine/built_ins.h"
#include "tests/engine/bytes.h"

namespace test {

/// Text in radix-40, padded with blanks to that many bytes.
inline std::string Compressed(std::string text, std::size_t bytes) {
    text.resize(bytes / 2 * 3, ' ');
    return engine::Crm(text);
}

/// An invoice line of 44 bytes: its type, and bytes from its third one on.
inline std::string InvoiceLine(const std::string& type, const std::string& rest) {
    std::string line = Compressed(type, 2) + rest;
    line.resize(44, '\x11');
    return line;
}

struct HistoryRecord {
    std::int32_t Sequence = 1;
    std::int32_t Link = 1;
    std::int32_t Invoice = 0;
    std::int32_t Type = 1;
    std::string Description = {};
    std::vector<std::string> Lines = {};
    std::size_t Length = 292;  // three lines

    std::string Bytes() const {
        std::string record(Length, '\0');
        record.replace(85, 20, Compressed(Description, 20));
        record.replace(105, 4, Big(Invoice, 4));
        record.replace(109, 3, Big(Link, 3));
        record.replace(114, 1, Big(Sequence, 1));
        record.replace(122, 1, Big(Type, 1));
        record.replace(145, 1, Big(static_cast<std::int32_t>(Lines.size()), 1));
        std::size_t place = 160;
        for (const std::string& line : Lines) {
            record.replace(place, line.size(), line);
            place += line.size();
        }
        return record;
    }
};

}  // namespace test
