#include "tests/catalogue/site_files.h"

#include <memory>

#include "engine/built_ins.h"
#include "engine/business_basic.h"
#include "tests/support/scratch.h"

namespace test {

namespace {

constexpr std::size_t BlockSize = 512;
constexpr std::size_t PointerLength = 4;

ByteString Padded(ByteString bytes, std::size_t length, char filler = '\0') {
    bytes.resize(length, filler);
    return bytes;
}

}  // namespace

ByteString BigEndian(std::int32_t value, std::size_t width) {
    ByteString bytes(width, '\0');
    auto rest = static_cast<std::uint32_t>(value);
    for (std::size_t i = width; i > 0; --i, rest >>= 8U) bytes[i - 1] = static_cast<char>(rest & 0xFFU);
    return bytes;
}

void SiteFiles::AddFile(const std::string& name, char type, std::size_t recordLength, std::int32_t lastRecord,
                        const ByteString& content) {
    const auto position = static_cast<std::int32_t>(mContainer.size() / BlockSize);
    mLinks += " " + Padded(":D01:" + name, 79, ' ') + " " + Padded("D01:DATADR", 79, ' ');
    mDirectory +=
        Padded(Padded(name, 10) + BigEndian(position, 3) +
                   BigEndian(static_cast<std::int32_t>(recordLength), 2) + type + BigEndian(lastRecord, 4),
               32);
    const std::size_t blocks = (content.size() + BlockSize - 1) / BlockSize;
    mContainer += Padded(content, blocks * BlockSize);
}

void SiteFiles::AddRecords(const std::string& name, const std::vector<ByteString>& records) {
    const std::size_t length = records.empty() ? 16 : records.front().size();
    const auto count = static_cast<std::int32_t>(records.size());
    ByteString content =
        Padded(BigEndian(-2, 2) + BigEndian(-1, 4) + BigEndian(count, 4) + BigEndian(count, 4), length);
    for (const ByteString& record : records) content += record;
    AddFile(name, 'L', length, count, content);
}

void SiteFiles::AddIndex(const std::string& name, const std::vector<IndexEntry>& entries) {
    const std::size_t keyLength = entries.front().Key.size();
    const auto entryLength = static_cast<std::int32_t>(keyLength + PointerLength);
    const ByteString header = BigEndian(entryLength, 2) + BigEndian(508 / entryLength, 2) + BigEndian(1, 2) +
                              BigEndian(2, 2) + BigEndian(1, 2) + BigEndian(0, 6);
    ByteString leaf = BigEndian(static_cast<std::int32_t>(entries.size()) + 1, 2) + BigEndian(65535, 2);
    for (const IndexEntry& entry : entries) leaf += entry.Key + BigEndian(entry.Record, PointerLength);
    AddFile(name, 'I', BlockSize, 1, Padded(header, BlockSize) + Padded(leaf, BlockSize, '\xFF'));
}

void SiteFiles::Write(const std::filesystem::path& shareRoot) const {
    const std::filesystem::path share = shareRoot / "SRV1" / "KSTLLNK";
    WriteBytes(share / "LINKSFILE", mLinks);
    WriteBytes(share / "ttymap", "");
    WriteBytes(share / "D01" / "DATADR", mDirectory);
    WriteBytes(share / "D01" / "DATADB", mContainer);
}

RunningEngine::RunningEngine(platform::WindowServices& window) {
    engine::gSystem = std::make_unique<engine::cSystem>();
    engine::gSystem->mUNCDrive = "SRV1";
    engine::gSystem->mDirectory = "D01";
    engine::gEngine = std::make_unique<engine::cBusinessBasic>(window);
    engine::gCodeChars.replace(0, 4, " ,-.");
}

RunningEngine::~RunningEngine() {
    engine::gEngine.reset();
    engine::gCodeChars = engine::StandardCodeChars;
}

}  // namespace test
