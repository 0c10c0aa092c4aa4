// Scratch folders and environment variables that last as long as a test.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace test {

/// A fresh, empty folder named after the running test; removed at the end. The databases in it are kept where
/// the environment variable VANTORA_KEEP_FILES names a folder.
class ScratchFolder {
  public:
    ScratchFolder() {
        const auto* const info = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("vantora-") + info->test_suite_name() + "-" + info->name() + "-";
        for (char& c : name) c = c == '/' ? '.' : c;
        std::random_device random;
        do {
            mPath = std::filesystem::temp_directory_path() / (name + std::to_string(random()));
        } while (!std::filesystem::create_directory(mPath));
    }
    ~ScratchFolder() {
        std::error_code ignored;
        if (const char* const keep = std::getenv("VANTORA_KEEP_FILES"); keep != nullptr) Keep(keep);
        std::filesystem::remove_all(mPath, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& Path() const { return mPath; }
    std::filesystem::path operator/(const std::string& name) const { return mPath / name; }

  private:
    void Keep(const std::filesystem::path& where) const {
        std::error_code ignored;
        for (const auto& file : std::filesystem::recursive_directory_iterator(mPath)) {
            const std::string name = mPath.filename().string() + "-" + file.path().filename().string();
            if (name.ends_with(".mdb")) std::filesystem::copy_file(file.path(), where / name, ignored);
        }
    }

    std::filesystem::path mPath;
};

/// An environment variable set for the life of this object, then put back.
class ScopedVariable {
  public:
    ScopedVariable(const char* name, const std::string& value) : mName(name) {
        if (const char* const before = std::getenv(name); before != nullptr) mBefore = before;
        SetVariable(value);
    }
    ~ScopedVariable() { SetVariable(mBefore.value_or("")); }
    ScopedVariable(const ScopedVariable&) = delete;
    ScopedVariable& operator=(const ScopedVariable&) = delete;

  private:
    /// An empty value takes the variable away.
    void SetVariable(const std::string& value) const {
#ifdef _WIN32
        _putenv_s(mName, value.c_str());
#else
        value.empty() ? unsetenv(mName) : setenv(mName, value.c_str(), 1);
#endif
    }

    const char* mName;
    std::optional<std::string> mBefore;
};

inline void WriteBytes(const std::filesystem::path& path, std::string_view bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

inline std::string ReadBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

}  // namespace test
