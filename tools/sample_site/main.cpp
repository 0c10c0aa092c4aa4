// sample_site OUT [--records N] [--seed S] [--expected]: writes a sample site into the folder OUT.

#include <charconv>
#include <cstdio>
#include <cstring>
#include <exception>
#include <optional>
#include <string>
#include <string_view>

#include "tools/sample_site/sample_site.h"

namespace {

struct Arguments {
    std::string Folder;
    sample::SampleOptions Options;
};

template <typename Number>
bool ReadNumber(std::string_view text, Number& number) {
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    return failure == std::errc{} && end == text.data() + text.size();
}

std::optional<Arguments> ReadArguments(int count, char** texts) {
    Arguments arguments;
    for (int i = 1; i < count; ++i) {
        const std::string_view text = texts[i];
        const std::string_view next = i + 1 < count ? std::string_view(texts[i + 1]) : std::string_view();
        if (text == "--expected") {
            arguments.Options.WriteExpected = true;
        } else if ((text == "--records" && ReadNumber(next, arguments.Options.Records)) ||
                   (text == "--seed" && ReadNumber(next, arguments.Options.Seed))) {
            ++i;
        } else if (!text.starts_with("--") && arguments.Folder.empty()) {
            arguments.Folder = text;
        } else {
            return std::nullopt;
        }
    }
    if (arguments.Folder.empty() || arguments.Options.Records < 1) return std::nullopt;
    return arguments;
}

}  // namespace

int main(int count, char** texts) {
    constexpr int UsageStatus = 2;
    const auto arguments = ReadArguments(count, texts);
    if (!arguments) {
        std::fputs("usage: sample_site OUT [--records N] [--seed S] [--expected]\n", stderr);
        return UsageStatus;
    }
    try {
        sample::WriteSampleSite(arguments->Folder, arguments->Options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "sample_site: %s\n", error.what());
        return 1;
    }
    return 0;
}
