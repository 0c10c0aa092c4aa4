#include "platform/file.h"

#include <sstream>

#include "platform/error.h"

namespace platform {

std::string Contents(const File& file) {
    std::string text(file.Length(), '\0');
    text.resize(file.ReadAt(0, std::as_writable_bytes(std::span(text))));
    return text;
}

std::optional<std::vector<std::string>> ReadLines(std::string_view path) {
    std::unique_ptr<File> file;
    try {
        file = File::Open(path, File::Mode::ReadOnly);
    } catch (const Error&) {
        return std::nullopt;
    }
    std::istringstream stream(Contents(*file));
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        if (line.ends_with('\r')) line.pop_back();
        lines.push_back(std::move(line));
    }
    return lines;
}

}  // namespace platform
