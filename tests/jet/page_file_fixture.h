// A file without any table, in either version of the format.
#pragma once

#include <memory>
#include <string>

#include "platform/jet/page_allocator.h"
#include "platform/jet/page_file.h"
#include "tests/support/scratch.h"

namespace test {

inline std::unique_ptr<jet::PageFile> EmptyFile(const std::string& path, jet::Version version) {
    jet::PageFile::Create(path)->Checkpoint();
    std::string bytes = ReadBytes(path);
    bytes[0x14] = static_cast<char>(version);
    WriteBytes(path, bytes);
    auto file = jet::PageFile::Open(path, jet::Sharing::Exclusive);
    if (version == jet::Version::Jet3) jet::PageAllocator::MakeGlobalMap(*file);  // where its page 1 begins
    return file;
}

}  // namespace test
