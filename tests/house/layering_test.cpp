// Reads every #include of the product's folders and finds the arrows that run against the layering, and the
// headers of one operating system outside the files that are written for it.
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

// A layer may include itself and the layers named here.
const std::map<std::string, std::set<std::string>> Allowed{
    {"platform", {}},
    {"platform/jet", {"platform"}},
    {"platform/dao", {"platform", "platform/jet"}},
    {"engine", {"platform"}},
    {"catalogue", {"platform", "platform/dao", "engine"}},
    {"export", {"platform", "platform/dao", "engine", "catalogue"}},
    {"ui", {"platform", "platform/dao", "engine", "catalogue", "export"}},
};

std::optional<std::string> LayerOf(const fs::path& relative) {
    const std::string folder = relative.parent_path().generic_string();
    if (Allowed.contains(folder)) return folder;
    const std::string top = relative.begin()->string();
    if (Allowed.contains(top)) return top;
    return std::nullopt;
}

/// The path of a line such as  #include "engine/links.h".
std::optional<fs::path> IncludedPath(std::string line) {
    std::erase(line, ' ');
    constexpr std::string_view Directive = "#include\"";
    if (!line.starts_with(Directive)) return std::nullopt;
    return line.substr(Directive.size(), line.find('"', Directive.size()) - Directive.size());
}

std::vector<std::string> ArrowsAgainstTheLayering(const fs::path& root) {
    std::vector<std::string> offenders;
    for (const auto& [layer, allowed] : Allowed) {
        for (const auto& entry : fs::directory_iterator(root / layer)) {
            const std::string extension = entry.path().extension().string();
            if (extension != ".h" && extension != ".cpp") continue;
            std::ifstream stream(entry.path());
            for (std::string line; std::getline(stream, line);) {
                const std::optional<fs::path> included = IncludedPath(line);
                if (!included) continue;
                const std::optional<std::string> target = LayerOf(*included);
                if (target && *target != layer && !allowed.contains(*target)) {
                    offenders.push_back(fs::relative(entry.path(), root).string() + " includes " +
                                        included->string());
                }
            }
        }
    }
    return offenders;
}

/// Headers that only POSIX systems have, or only Windows, in files whose names do not say so.
std::vector<std::string> HeadersOfOneSystem(const fs::path& root) {
    static const std::regex ofOneSystem(
        R"(\s*#\s*include\s*<((sys|netinet|arpa|linux)/.*|unistd.h|fcntl.h|netdb.h|dirent.h|poll.h|spawn.h|pwd.h|)"
        R"(pthread.h|dlfcn.h|strings.h|windows.h|winsock2.h|shlobj.h|io.h|direct.h)>.*)");
    std::vector<std::string> offenders;
    for (const auto& [layer, allowed] : Allowed) {
        for (const auto& entry : fs::directory_iterator(root / layer)) {
            const std::string name = entry.path().stem().string();
            if (!entry.is_regular_file() || name.ends_with("_posix") || name.ends_with("_windows")) continue;
            std::ifstream stream(entry.path());
            for (std::string line; std::getline(stream, line);)
                if (std::regex_match(line, ofOneSystem))
                    offenders.push_back(fs::relative(entry.path(), root).string() + ": " + line);
        }
    }
    return offenders;
}

void Write(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << text;
}

TEST(Layering, NoArrowRunsBackwards) {
    EXPECT_EQ(ArrowsAgainstTheLayering(VANTORA_SOURCE_DIR), std::vector<std::string>{});
}

TEST(Layering, OneSystemsHeadersStayInItsFiles) {
    EXPECT_EQ(HeadersOfOneSystem(VANTORA_SOURCE_DIR), std::vector<std::string>{});
}

TEST(Layering, ABackwardArrowAndAHeaderOfOneSystemAreFound) {
    const fs::path root = fs::path(testing::TempDir()) / "layering";
    fs::remove_all(root);
    for (const auto& [layer, allowed] : Allowed) fs::create_directories(root / layer);
    Write(root / "engine/a.cpp", "#include \"platform/file.h\"\n#include \"platform/dao/value.h\"\n");
    Write(root / "export/b.h",
          "  #  include \"platform/jet/table.h\"\n#include <vector>\n#include \"export/c.h\"\n");
    EXPECT_EQ(ArrowsAgainstTheLayering(root),
              (std::vector<std::string>{"engine/a.cpp includes platform/dao/value.h",
                                        "export/b.h includes platform/jet/table.h"}));
    Write(root / "platform/d_posix.cpp", "#include <unistd.h>\n");
    Write(root / "platform/d.cpp", "#include <string>\n# include <sys/stat.h>\n");
    EXPECT_EQ(HeadersOfOneSystem(root), std::vector<std::string>{"platform/d.cpp: # include <sys/stat.h>"});
}

}  // namespace
