// Keyed indexes and records of any bytes. An input: how the file is described, its last record, a key length,
// twelve steps to take, then the container.
#include <algorithm>

#include "engine/index_traversal.h"
#include "engine/keyed_index.h"
#include "engine/records.h"
#include "platform/silent_window.h"
#include "tests/engine/index_builder.h"
#include "tests/fuzz/fuzzing.h"
#include "tests/fuzz/scratch_home.h"

namespace {

using platform::File;

constexpr std::size_t FirstStep = 3;
constexpr std::size_t Prefix = FirstStep + 12;

/// One file for all inputs.
const std::shared_ptr<engine::cOpenFile>& Container() {
    static const test::ScratchHome home;
    static const std::string path = (home / "container").string();
    static const auto container =
        std::make_shared<engine::cOpenFile>(1, path, 0, File::Open(path, File::Mode::CreateNew));
    return container;
}

struct Place {
    std::string Buff, Key;
    std::int32_t Rec = 0;
};

void Step(const engine::LogicalFileHandle& file, std::uint8_t step, Place& at) {
    platform::SilentWindow window;
    switch (step % 8) {
        case 0:
            at.Key = std::string(step % 5, static_cast<char>(step));
            return engine::KFind(file, at.Buff, at.Key, at.Rec, window);
        case 1:
            return engine::KFind(file, at.Buff, at.Key, at.Rec, window);
        case 2:
            return engine::KPrev(file, at.Buff, at.Key, at.Rec);
        case 3:
            return engine::KLast(file, at.Buff, at.Key, at.Rec);
        case 4:
            at.Rec = std::max(engine::KCount(file, window), engine::KLength(file));
            return;
        case 5:
            return engine::DelRec(file, step);
        default:
            for (int i = 0; i < step; ++i) engine::KNext(file, at.Buff, at.Key, at.Rec);
            engine::iLreadFile(file, at.Rec);
    }
}

/// An input whose index is in order, for mutations to start from.
std::string SoundIndex(unsigned seed) {
    std::mt19937 random(seed);
    test::IndexFormat format{static_cast<int>(20 + random() % 100), random() % 4 == 0, random() % 3 == 0};
    if (format.Extended) format.KeyLength += 400;
    std::vector<test::KeyAndPointer> sorted;
    for (char letter = 'A'; letter < 'Z' && random() % 20 != 0; ++letter)
        sorted.push_back({std::string(static_cast<std::size_t>(format.KeyLength), letter), letter});
    const test::RandomTree tree(format, sorted, random);
    std::string input{static_cast<char>(format.Extended ? 3 : 0), static_cast<char>(tree.LastBlock()), '\4'};
    while (input.size() < Prefix) input += static_cast<char>(random());
    return input + tree.Bytes();
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t room,
                                               unsigned seed) {
    return test::MutateOrMake(data, size, room, seed, Prefix, SoundIndex);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < Prefix) return 0;
    Container()->File().SetLength(0);
    Container()->File().WriteAt(0, std::as_bytes(std::span(data + Prefix, size - Prefix)));
    const std::int32_t length = (data[0] & 4U) != 0 ? data[2] * 5 : (data[0] & 2U) != 0 ? 2048 : 512;
    const auto file = std::make_shared<engine::cLogicalFile>(engine::cLogicalFile{
        "FUZZ", "L", Container(), (data[0] & 8U) != 0 ? 1 : 0, 0, length, data[1], (data[0] & 1U) != 0});
    Place at;
    for (std::size_t step = FirstStep; step < Prefix; ++step) {
        test::Try([&] { Step(file, data[step], at); });
    }
    return 0;
}
