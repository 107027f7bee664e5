#include "effect/ui/PresetBundle.h"

#include <iconv.h>
#include <lilv/lilv.h>
#include <lv2/presets/presets.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string_view>
#include <system_error>

#include "effect/Uris.h"

namespace orvalo::effect::ui {

namespace {

namespace fs = std::filesystem;

constexpr const char* manifestName = "manifest.ttl";
constexpr const char* presetName = "preset.ttl";

struct Free {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
    void operator()(LilvNodes* nodes) const { lilv_nodes_free(nodes); }
    void operator()(LilvWorld* world) const { lilv_world_free(world); }
};

using World = std::unique_ptr<LilvWorld, Free>;
using Node = std::unique_ptr<LilvNode, Free>;
using Nodes = std::unique_ptr<LilvNodes, Free>;

std::optional<Parameter> parameterOf(std::string_view symbol) {
    const auto* const found =
        std::find_if(parameterRanges.begin(), parameterRanges.end(),
                     [symbol](const ParameterRange& one) { return symbol == one.symbol; });
    if (found == parameterRanges.end()) {
        return std::nullopt;
    }
    return static_cast<Parameter>(found - parameterRanges.begin());
}

/// Whether the text is valid UTF-8. serd also passes surrogates, overlong forms and numbers beyond
/// Unicode; cairo then draws nothing more.
bool isUtf8(std::string text) {
    auto* const converter = iconv_open("UTF-16LE", "UTF-8");
    std::string converted(2 * text.size(), '\0');
    char* from = text.data();
    char* to = converted.data();
    std::size_t left = text.size();
    std::size_t room = converted.size();
    const bool isValid = iconv(converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
    iconv_close(converter);
    return isValid;
}

/// The text with spaces for control characters, which a host that writes presets refuses; empty if
/// it is not UTF-8.
std::string plainText(std::string text) {
    if (!isUtf8(text)) {
        return {};
    }
    std::ranges::replace_if(
        text, [](unsigned char byte) { return byte < ' ' || byte == 0x7F; }, ' ');
    return text;
}

/// Adds the defaults of the controls that the preset does not set, such as those of later versions,
/// so that it sounds the same whatever was chosen before. Orders the values.
void completeValues(Preset& preset) {
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto parameter = static_cast<Parameter>(i);
        const bool isSet = std::any_of(preset.values.begin(), preset.values.end(),
                                       [&](const auto& one) { return one.first == parameter; });
        if (isInPresets(parameter) && !isSet) {
            preset.values.emplace_back(parameter, range(parameter).standard);
        }
    }
    std::sort(preset.values.begin(), preset.values.end());
}

/// Reads one bundle through lilv, in a world without others.
class BundleReader {
  public:
    explicit BundleReader(const fs::path& folder) : world_(lilv_world_new()) {
        // The URI of a bundle ends in a slash.
        const Node address(lilv_new_file_uri(world_.get(), nullptr, (folder / "").c_str()));
        lilv_world_load_bundle(world_.get(), address.get());
    }

    std::vector<Preset> presets() const {
        std::vector<Preset> presets;
        std::set<std::string> known;
        for (const char* effect : {pluginUri, sideChainPluginUri}) {
            const Nodes found = subjects(LV2_CORE__appliesTo, effect);
            LILV_FOREACH(nodes, i, found.get()) {
                const LilvNode* subject = lilv_nodes_get(found.get(), i);
                if (!known.insert(lilv_node_as_string(subject)).second) {
                    continue;
                }
                Preset preset = read(subject);
                if (!preset.name.empty() && !preset.values.empty()) {
                    presets.push_back(std::move(preset));
                }
            }
        }
        return presets;
    }

    /// Whether the manifest has one preset and no plug-in.
    bool hasOnePreset() const {
        const Nodes all = subjects(LILV_NS_RDF "type", LV2_PRESETS__Preset);
        return lilv_nodes_size(all.get()) == 1 &&
               lilv_plugins_size(lilv_world_get_all_plugins(world_.get())) == 0;
    }

  private:
    Node uri(const char* text) const { return Node(lilv_new_uri(world_.get(), text)); }
    Nodes subjects(const char* predicate, const char* object) const {
        return Nodes(
            lilv_world_find_nodes(world_.get(), nullptr, uri(predicate).get(), uri(object).get()));
    }
    Node get(const LilvNode* subject, const char* predicate) const {
        return Node(lilv_world_get(world_.get(), subject, uri(predicate).get(), nullptr));
    }
    std::string text(const LilvNode* subject, const char* predicate) const {
        const Node found = get(subject, predicate);
        return found == nullptr ? "" : plainText(lilv_node_as_string(found.get()));
    }

    Preset read(const LilvNode* preset) const {
        lilv_world_load_resource(world_.get(), preset);
        Preset result{.name = text(preset, LILV_NS_RDFS "label"),
                      .values = {},
                      .description = text(preset, LILV_NS_RDFS "comment")};
        const Nodes ports(
            lilv_world_find_nodes(world_.get(), preset, uri(LV2_CORE__port).get(), nullptr));
        LILV_FOREACH(nodes, i, ports.get()) {
            const LilvNode* port = lilv_nodes_get(ports.get(), i);
            const Node value = get(port, LV2_PRESETS__value);
            const auto parameter = parameterOf(text(port, LV2_CORE__symbol));
            const bool isNumber = value != nullptr && (lilv_node_is_float(value.get()) ||
                                                       lilv_node_is_int(value.get()));
            // Other hosts also save whether the effect is enabled.
            if (isNumber && parameter && isInPresets(*parameter)) {
                result.values.emplace_back(
                    *parameter, range(*parameter).clamp(lilv_node_as_float(value.get())));
            }
        }
        if (!result.values.empty()) {
            completeValues(result);
        }
        return result;
    }

    World world_;
};

bool isEarlier(const StoredPreset& one, const StoredPreset& other) {
    return one.preset.name < other.preset.name;
}

/// Whether the manifest names the effect. Most bundles in `~/.lv2` do not, and lilv would take time
/// to read them all.
bool isForEffect(const fs::path& folder) {
    std::ifstream file(folder / manifestName, std::ios::binary);
    std::ostringstream text;
    // Does not throw if the manifest cannot be read, such as a folder of that name.
    text << file.rdbuf();
    return text.view().find(pluginUri) != std::string_view::npos;
}

std::string numberText(float value) {
    std::array<char, 64> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed);
    std::string text(digits.data(), end.ptr);
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

std::string literal(std::string_view text) {
    std::string result = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') {
            result += '\\';
        }
        result += c;
    }
    return result + '"';
}

constexpr const char* prefixes =
    "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
    "@prefix pset: <http://lv2plug.in/ns/ext/presets#> .\n"
    "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n\n";

/// The plug-ins that a saved preset applies to.
std::string bothPlugins() {
    return std::string("<") + pluginUri + "> , <" + sideChainPluginUri + ">";
}

std::string manifestText() {
    return std::string(prefixes) + "<" + presetName + ">\n\ta pset:Preset ;\n\tlv2:appliesTo " +
           bothPlugins() + " ;\n\trdfs:seeAlso <" + presetName + "> .\n";
}

std::string presetText(const Preset& preset) {
    std::string text = std::string(prefixes) + "<>\n\ta pset:Preset ;\n\tlv2:appliesTo " +
                       bothPlugins() + " ;\n\trdfs:label " + literal(preset.name);
    if (!preset.description.empty()) {
        text += " ;\n\trdfs:comment " + literal(preset.description);
    }
    const char* before = " ;\n\tlv2:port ";
    for (const auto& [parameter, value] : preset.values) {
        text += std::string(before) + "[\n\t\tlv2:symbol \"" + range(parameter).symbol +
                "\" ;\n\t\tpset:value " + numberText(value) + "\n\t]";
        before = " , ";
    }
    return text + " .\n";
}

/// Replaces the file as a whole, so that no reader gets half of it.
void writeFile(const fs::path& path, const std::string& text) {
    const fs::path written = path.native() + ".part";
    std::ofstream file(written, std::ios::binary | std::ios::trunc);
    file << text;
    file.close();
    if (!file) {
        const std::error_code error(errno, std::generic_category());
        std::error_code ignored;
        fs::remove(written, ignored);
        throw std::system_error(error);
    }
    fs::rename(written, path);
}

}  // namespace

std::vector<StoredPreset> readBundle(const fs::path& folder) {
    const BundleReader reader(folder);
    std::vector<StoredPreset> result;
    for (Preset& preset : reader.presets()) {
        preset.isUser = reader.hasOnePreset();
        result.push_back({std::move(preset), folder});
    }
    std::sort(result.begin(), result.end(), isEarlier);
    return result;
}

std::vector<StoredPreset> readBundles(const fs::path& folder) {
    std::vector<fs::path> bundles;
    std::error_code error;
    for (fs::directory_iterator item(folder, error), end; !error && item != end;
         item.increment(error)) {
        if (isForEffect(item->path())) {
            bundles.push_back(item->path());
        }
    }
    std::sort(bundles.begin(), bundles.end());
    std::vector<StoredPreset> result;
    for (const auto& bundle : bundles) {
        auto presets = readBundle(bundle);
        std::move(presets.begin(), presets.end(), std::back_inserter(result));
    }
    std::stable_sort(result.begin(), result.end(), isEarlier);
    return result;
}

void writeBundle(const fs::path& folder, const Preset& preset) {
    const bool isNew = fs::create_directories(folder);
    try {
        writeFile(folder / presetName, presetText(preset));
        // Last: hosts read a folder with a manifest.
        writeFile(folder / manifestName, manifestText());
    } catch (const std::system_error&) {
        std::error_code ignored;
        if (isNew) {
            fs::remove_all(folder, ignored);
        }
        throw;
    }
}

void removeBundle(const fs::path& folder) {
    fs::remove(folder / manifestName);
    std::error_code ignored;
    for (const auto& item : fs::directory_iterator(folder, ignored)) {
        if (item.path().extension() == ".ttl" && !item.is_directory(ignored)) {
            fs::remove(item.path());
        }
    }
    fs::remove(folder, ignored);
}

}  // namespace orvalo::effect::ui
