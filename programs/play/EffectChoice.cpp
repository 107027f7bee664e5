#include "programs/play/EffectChoice.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "hosting/OrvaloComponent.h"
#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/audio/lv2/LV2AudioUnit.h"
#include "programs/play/ControlSetting.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr auto kValuesPreset = "urn:orvalo-play:values";

/// The URI of the only plug-in in a bundle, which becomes part of the search path.
std::string onlyPluginIn(const fs::path& bundle) {
    auto& world = LV2World::shared();
    world.addBundle(bundle);
    const auto plugins = world.pluginURIs(bundle);
    if (plugins.empty()) {
        throw std::runtime_error("--effect: " + bundle.string() + " is no bundle with an effect.");
    }
    if (plugins.size() > 1) {
        std::string all;
        for (const auto& plugin : plugins) {
            all.append(all.empty() ? "" : ", ").append(plugin);
        }
        throw std::runtime_error(
            "--effect: " + bundle.string() + " has " + std::to_string(plugins.size()) +
            " effects; name one, with the folder around it in LV2_PATH: " + all + ".");
    }
    return plugins.front();
}

/// The manufacturer code that a bundle states of an effect; 0 without one.
std::uint32_t statedManufacturer(LV2World& world, const std::string& uri) {
    const auto components = world.components();
    const auto found = std::ranges::find_if(
        components, [&uri](const auto& component) { return component->uri == uri; });
    return found == components.end() ? 0 : (*found)->statedManufacturer;
}

/// The URI of the effect that plays.
std::string chosenEffect(const PlayOptions& options) {
    if (!options.effect) {
        const auto components =
            AVAudioUnitComponentManager::sharedAudioUnitComponentManager()->components(
                orvaloComponentDescription);
        if (components.empty()) {
            throw std::runtime_error("there is no effect for --preset or --set.");
        }
        return components.front()->uri;
    }
    std::error_code ignored;
    auto& world = LV2World::shared();
    auto uri = fs::is_directory(*options.effect, ignored) ? onlyPluginIn(*options.effect)
                                                          : *options.effect;
    const auto plugins = world.pluginURIs();
    if (std::ranges::find(plugins, uri) == plugins.end()) {
        throw std::runtime_error(
            "--effect: '" + uri + "' is neither an installed effect nor a folder" +
            (plugins.empty() ? "." : "; the nearest is '" + plugins[nearest(uri, plugins)] + "'."));
    }
    // The programs play the effect with these codes. They give no rights.
    world.setOnlyComponent(std::make_shared<AVAudioUnitComponent>(
        orvaloComponentDescription, "", uri, statedManufacturer(world, uri)));
    return uri;
}

std::string presetURI(const std::string& effect, const std::string& nameOrURI) {
    const auto presets = findPresets(LV2World::shared(), effect);
    std::vector<std::string> names;
    for (const auto& preset : presets) {
        if (preset.uri == nameOrURI || preset.label == nameOrURI) {
            return preset.uri;
        }
        names.push_back(preset.label);
    }
    throw std::runtime_error(
        "--preset: the effect has no preset '" + nameOrURI + "'" +
        (names.empty() ? "." : "; the nearest is '" + names[nearest(nameOrURI, names)] + "'."));
}

/// Writes a bundle with a preset of the values: a preset reaches an effect in every process, also
/// in one that replaces a service that died.
void writePreset(const fs::path& bundle, const std::string& effect,
                 const std::vector<ControlSetting>& values) {
    std::ofstream manifest(bundle / "manifest.ttl");
    manifest << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
                "@prefix pset: <http://lv2plug.in/ns/ext/presets#> .\n<"
             << kValuesPreset << "> a pset:Preset ; lv2:appliesTo <" << effect
             << "> ;\n  <http://www.w3.org/2000/01/rdf-schema#label> \"--set\"";
    for (const auto& [symbol, value] : values) {
        std::array<char, 64> text{};
        const char* const end =
            std::to_chars(text.begin(), text.end(), value, std::chars_format::scientific).ptr;
        manifest << " ;\n  lv2:port [ lv2:symbol \"" << symbol << "\" ; pset:value "
                 << std::string_view(text.begin(), end) << " ]";
    }
    manifest << " .\n";
    manifest.close();
    if (!manifest) {
        throw std::runtime_error((bundle / "manifest.ttl").string() + " cannot be written.");
    }
}

}  // namespace

EffectChoice::EffectChoice(const PlayOptions& options) {
    if (!options.effect && !options.preset && options.settings.empty()) {
        return;
    }
    const auto effect = chosenEffect(options);
    auto& world = LV2World::shared();
    std::vector<ControlSetting> values;
    {
        const LV2World::Access access(world);
        const auto data = LV2PluginData::read(access, effect);
        for (const auto& setting : options.settings) {
            values.push_back(readSetting(access, data, setting));
        }
    }
    if (options.preset) {
        presets_.push_back(presetURI(effect, *options.preset));
    }
    if (!values.empty()) {
        folder_.emplace("orvalo-play");
        writePreset(folder_->path(), effect, values);
        world.addBundle(folder_->path());
        presets_.emplace_back(kValuesPreset);
    }
}

void EffectChoice::apply(AUAudioUnit& unit) const {
    const auto* const lv2 = dynamic_cast<const LV2AudioUnit*>(&unit);
    if (lv2 == nullptr) {
        return;
    }
    for (const auto& uri : presets_) {
        const auto found = std::ranges::find(lv2->presets(), uri, &LV2Preset::uri);
        unit.setCurrentPreset(
            std::make_shared<AUAudioUnitPreset>(found - lv2->presets().begin(), found->label));
    }
}

}  // namespace orvalo
