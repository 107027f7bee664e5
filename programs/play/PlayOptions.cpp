#include "programs/play/PlayOptions.h"

#include <glib.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

constexpr auto kSummary =
    "Plays demonstration music through the Orvalo effect, pass after pass, until interrupted.";

/// The number in a text that contains nothing else.
template <typename Number>
std::optional<Number> parsed(std::string_view text) {
    Number number{};
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, number);
    return result.ec == std::errc() && result.ptr == end ? std::optional(number) : std::nullopt;
}

std::int64_t parsedPasses(std::string_view text) {
    const auto passes = parsed<std::int64_t>(text);
    if (!passes || *passes < 1) {
        throw std::runtime_error("--passes wants a whole number above 0, not '" +
                                 std::string(text) + "'.");
    }
    return *passes;
}

double parsedSeconds(std::string_view text) {
    const auto seconds = parsed<double>(text);
    if (!seconds || !std::isfinite(*seconds) || *seconds <= 0.0) {
        throw std::runtime_error("--seconds wants a number above 0, not '" + std::string(text) +
                                 "'.");
    }
    return *seconds;
}

std::optional<std::string> text(const GText& value, const char* option,
                                const char* what = "a file name") {
    if (!value) {
        return {};
    }
    if (*value == '\0') {
        throw std::runtime_error(std::string(option) + " wants " + what + ", not an empty one.");
    }
    return value.get();
}

/// Whether the path names what is written directly: a device or a pipe.
bool isDevice(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_other(path, ignored);
}

void checkRender(const std::string& path) {
    auto ending = std::filesystem::path(path).extension().string();
    std::ranges::transform(ending, ending.begin(), g_ascii_tolower);
    if (ending != ".wav" && !isDevice(path)) {
        throw std::runtime_error("--render writes wav files, so the name must end in .wav: '" +
                                 path + "'.");
    }
}

}  // namespace

PlayOptions PlayOptions::parse(int argc, char** argv) {
    char* passes = nullptr;
    char* seconds = nullptr;
    char* render = nullptr;
    char* file = nullptr;
    char* effect = nullptr;
    char* preset = nullptr;
    char** settings = nullptr;
    gboolean list = FALSE;
    gboolean all = FALSE;
    gboolean inProcess = FALSE;
    // NOLINTNEXTLINE(modernize-avoid-c-arrays): GLib's type, ended by an empty entry.
    const GOptionEntry entries[] = {
        {"passes", 'n', 0, G_OPTION_ARG_STRING, &passes, "Stop after N passes of the file", "N"},
        {"seconds", 's', 0, G_OPTION_ARG_STRING, &seconds, "Stop after S seconds", "S"},
        {"render", 'r', 0, G_OPTION_ARG_FILENAME, &render,
         "Write to a wav file, as fast as possible, instead of playing; one pass by default",
         "FILE.wav"},
        {"file", 'f', 0, G_OPTION_ARG_FILENAME, &file,
         "Play this file instead of a demonstration file", "AUDIO"},
        {"effect", 'e', 0, G_OPTION_ARG_FILENAME, &effect,
         "Play through this installed effect, or the one in that bundle", "URI|FOLDER"},
        {"preset", 'p', 0, G_OPTION_ARG_STRING, &preset, "Load a preset of the effect", "NAME|URI"},
        {"set", 'S', 0, G_OPTION_ARG_STRING_ARRAY, &settings,
         "Set a control of the effect; may be repeated", "SYMBOL=VALUE"},
        {"in-process", 'i', 0, G_OPTION_ARG_NONE, &inProcess,
         "Load the effect in this process instead of the effect service", nullptr},
        {"list", 'l', 0, G_OPTION_ARG_NONE, &list, "Show the effects in the registry", nullptr},
        {"all", 'a', 0, G_OPTION_ARG_NONE, &all, "With --list: show all installed effects",
         nullptr},
        {nullptr, '\0', 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};

    const std::unique_ptr<GOptionContext, Release<g_option_context_free>> context(
        g_option_context_new(nullptr));
    g_option_context_set_summary(context.get(), kSummary);
    g_option_context_add_main_entries(context.get(), entries, nullptr);

    GError* failure = nullptr;
    const bool isParsed = g_option_context_parse(context.get(), &argc, &argv, &failure) != FALSE;
    const GText passesText(passes);
    const GText secondsText(seconds);
    const GText renderText(render);
    const GText fileText(file);
    const GText effectText(effect);
    const GText presetText(preset);
    const std::unique_ptr<char*, Release<g_strfreev>> settingTexts(settings);
    if (!isParsed) {
        throw std::runtime_error(GErrorPointer(failure)->message);
    }
    if (argc > 1) {
        throw std::runtime_error("'" + std::string(argv[1]) +
                                 "' is no option; a file to play goes behind "
                                 "--file.");
    }

    PlayOptions options;
    if (passesText) {
        options.passes = parsedPasses(passesText.get());
    }
    if (secondsText) {
        options.seconds = parsedSeconds(secondsText.get());
    }
    options.render = text(renderText, "--render");
    if (options.render) {
        checkRender(*options.render);
    }
    options.file = text(fileText, "--file");
    options.effect = text(effectText, "--effect", "a URI or a folder");
    options.preset = text(presetText, "--preset", "a name or a URI");
    for (char** setting = settings; setting != nullptr && *setting != nullptr; ++setting) {
        options.settings.emplace_back(*setting);
    }
    options.list = list != FALSE;
    options.all = all != FALSE;
    if (options.all && !options.list) {
        throw std::runtime_error("--all goes with --list.");
    }
    options.inProcess = inProcess != FALSE;
    return options;
}

}  // namespace orvalo
