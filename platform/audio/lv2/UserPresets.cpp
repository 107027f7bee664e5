#include "platform/audio/lv2/UserPresets.h"

#include <glib.h>
#include <glib/gstdio.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cmath>
#include <set>
#include <system_error>

#include "platform/audio/lv2/LV2Bundle.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr const char* kManifest = "manifest.ttl";
constexpr const char* kPreset = "preset.ttl";
constexpr std::size_t kMostBundles = 1000;
constexpr std::size_t kLongestName = 200;
constexpr std::size_t kLongestText = 2000;

NSError refusal(const std::string& reason) {
    return {"LV2", EPERM, "The preset of a plug-in's UI is refused: " + reason + "."};
}

/// UTF-8 without control characters.
bool isText(const std::string& text, std::size_t longest) {
    return text.size() <= longest &&
           g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr) != FALSE &&
           std::none_of(text.begin(), text.end(),
                        [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; });
}

/// The path of a bundle; throws for a name that leads elsewhere.
fs::path bundlePath(const std::string& folder) {
    if (!isText(folder, kLongestName) || folder.starts_with('.') || !folder.ends_with(".lv2") ||
        folder.find('/') != std::string::npos) {
        throw refusal("its folder has a name that is not allowed");
    }
    return userPresetFolder() / folder;
}

bool isMissing(const fs::path& path) {
    std::error_code ignored;
    return fs::symlink_status(path, ignored).type() == fs::file_type::not_found;
}

/// Whether the bundle is a folder with Turtle files only, and one preset of the plug-in only.
bool isUserPreset(const std::string& plugin, const fs::path& path) {
    std::error_code error;
    if (fs::symlink_status(path, error).type() != fs::file_type::directory) {
        return false;
    }
    for (fs::directory_iterator item(path, error), end; !error && item != end;
         item.increment(error)) {
        std::error_code ignored;
        if (item->path().extension() != ".ttl" ||
            item->symlink_status(ignored).type() != fs::file_type::regular) {
            return false;
        }
    }
    const auto found = findBundles({.folders = {}, .ownFolder = {}, .bundles = {path}});
    if (error || found.size() != 1) {
        return false;
    }
    const auto& bundle = found.front();
    std::set<std::string> resources(bundle.resources.begin(), bundle.resources.end());
    return bundle.plugins.empty() && bundle.codes.empty() && resources.erase(plugin) == 1 &&
           resources.size() == 1;
}

std::size_t countPresets(const std::string& plugin) {
    const auto bundles = findBundles({.folders = {userPresetFolder()}, .ownFolder = {}});
    return static_cast<std::size_t>(
        std::count_if(bundles.begin(), bundles.end(), [&plugin](const LV2Bundle& bundle) {
            return std::find(bundle.resources.begin(), bundle.resources.end(), plugin) !=
                   bundle.resources.end();
        }));
}

std::string quoted(const std::string& text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

std::string numberText(float value) {
    std::array<char, G_ASCII_DTOSTR_BUF_SIZE> digits{};
    // Nine digits give the same float again.
    std::string text = g_ascii_formatd(digits.data(), static_cast<int>(digits.size()), "%.9g",
                                       static_cast<double>(value));
    const bool isWhole = text.find_first_of(".e") == std::string::npos;
    return isWhole ? text + ".0" : text;
}

std::string headText(const std::string& subject, const std::string& plugin) {
    return "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
           "@prefix pset: <http://lv2plug.in/ns/ext/presets#> .\n"
           "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n\n<" +
           subject + ">\n\ta pset:Preset ;\n\tlv2:appliesTo <" + plugin + "> ;\n";
}

std::string presetText(const std::string& plugin, const std::vector<LV2Port>& ports,
                       const UserPreset& preset) {
    std::string text = headText("", plugin) + "\trdfs:label " + quoted(preset.label);
    if (!preset.comment.empty()) {
        text += " ;\n\trdfs:comment " + quoted(preset.comment);
    }
    std::string before = " ;\n\tlv2:port ";
    for (const auto& [port, value] : preset.values) {
        text += before + "[\n\t\tlv2:symbol " + quoted(ports.at(port).symbol) +
                " ;\n\t\tpset:value " + numberText(value) + "\n\t]";
        before = " , ";
    }
    return text + " .\n";
}

void check(const std::vector<LV2Port>& ports, const UserPreset& preset) {
    if (preset.label.empty() || !isText(preset.label, kLongestName) ||
        !isText(preset.comment, kLongestText)) {
        throw refusal("its name or its description is not plain text");
    }
    std::set<std::uint32_t> seen;
    for (const auto& [port, value] : preset.values) {
        const bool isControl =
            port < ports.size() && ports[port].isInput && ports[port].kind == LV2PortKind::control;
        if (!isControl || !std::isfinite(value) || !seen.insert(port).second) {
            throw refusal("it has a value that is not one of the effect's controls");
        }
    }
    if (seen.empty()) {
        throw refusal("it has no values");
    }
}

void writeFile(const fs::path& path, const std::string& text) {
    GError* error = nullptr;
    // Replaces the file as a whole.
    if (g_file_set_contents(path.c_str(), text.data(), static_cast<gssize>(text.size()), &error) ==
        FALSE) {
        const GErrorPointer caught(error);
        throw NSError("LV2", EIO, caught->message);
    }
}

}  // namespace

fs::path userPresetFolder() {
    return fs::path(g_get_home_dir()) / ".lv2";
}

void writeUserPreset(const std::string& plugin, const std::vector<LV2Port>& ports,
                     const UserPreset& preset) {
    const auto path = bundlePath(preset.folder);
    check(ports, preset);
    if (isMissing(path)) {
        if (countPresets(plugin) >= kMostBundles) {
            throw refusal("the effect has too many presets in ~/.lv2");
        }
        if (g_mkdir_with_parents(path.c_str(), S_IRWXU | S_IRGRP | S_IXGRP | S_IROTH | S_IXOTH) !=
            0) {
            throw NSError::posix(errno, path.string());
        }
    } else if (!isUserPreset(plugin, path)) {
        throw refusal(preset.folder + " is not a preset of the effect alone");
    }
    writeFile(path / kPreset, presetText(plugin, ports, preset));
    // Last: hosts read a folder with a manifest.
    writeFile(path / kManifest, headText(kPreset, plugin) + "\trdfs:seeAlso <" + kPreset + "> .\n");
}

void removeUserPreset(const std::string& plugin, const std::string& folder) {
    const auto path = bundlePath(folder);
    if (isMissing(path)) {
        return;
    }
    if (!isUserPreset(plugin, path)) {
        throw refusal(folder + " is not a preset of the effect alone");
    }
    std::error_code error;
    // First, so that no host reads half of the bundle.
    fs::remove(path / kManifest, error);
    for (const auto& item : fs::directory_iterator(path, error)) {
        fs::remove(item.path(), error);
    }
    if (!fs::remove(path, error) && error) {
        throw NSError::posix(error.value(), path.string());
    }
}

}  // namespace orvalo
