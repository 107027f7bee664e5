#include "bench/measuring/Options.h"

#include <charconv>
#include <cstdio>
#include <cstdlib>

namespace orvalo::bench {

namespace {

constexpr int kBadOption = 2;

[[noreturn]] void finish(int status) {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs yet.
    std::exit(status);
}

}  // namespace

Options::Options(int argc, char** argv, std::map<std::string, std::string> defaults)
    : values_(std::move(defaults)) {
    for (int index = 1; index < argc; index += 2) {
        const std::string name = argv[index];
        const auto found = values_.find(name);
        if (found == values_.end() || index + 1 == argc) {
            const bool isHelp = name == "--help";
            auto* stream = isHelp ? stdout : stderr;
            std::fprintf(stream, "%s [OPTION VALUE]..., with these defaults:\n", argv[0]);
            for (const auto& [option, value] : values_) {
                std::fprintf(stream, "  %s %s\n", option.c_str(), value.c_str());
            }
            finish(isHelp ? EXIT_SUCCESS : kBadOption);
        }
        found->second = argv[index + 1];
    }
}

int Options::count(const std::string& name) const {
    const auto& value = text(name);
    int result = 0;
    const auto parsed = std::from_chars(value.data(), value.data() + value.size(), result);
    if (parsed.ec != std::errc() || parsed.ptr != value.data() + value.size() || result < 1) {
        std::fprintf(stderr, "%s needs a whole number above 0, not '%s'.\n", name.c_str(),
                     value.c_str());
        finish(kBadOption);
    }
    return result;
}

}  // namespace orvalo::bench
