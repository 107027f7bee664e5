#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "effect/ui/PresetBundle.h"
#include "effect/ui/PresetWriter.h"
#include "effect/ui/model/PresetStore.h"

namespace orvalo::effect::ui {

/// The presets of the effect's bundle, and the user's in `~/.lv2`, each in its own bundle. Of the
/// user's presets with one name only the first is listed. A preset that replaces another one is
/// written into the bundle of that one, so that none is lost when the writing fails.
class PresetFiles final : public PresetStore {
  public:
    /// bundle: the effect's. writer: of a host that writes the files; null if the UI writes them.
    PresetFiles(const std::filesystem::path& bundle, const PresetWriter* writer);

    std::vector<Preset> read() override;
    std::string save(const Preset& preset, const std::string& replaced) override;
    std::string remove(const std::string& name) override;

    /// Whether the host has not done all that it was asked to do.
    bool isWaiting() const { return !awaited_.empty(); }
    /// Looks for what the host has done. Returns a complaint if it did not do something in time.
    /// now: in seconds.
    std::string check(double now);

  private:
    /// What the host was asked to do with a bundle: to write a preset, or to remove it.
    struct Awaited {
        std::string name;
        std::filesystem::path folder;
        /// Absent for a removal.
        std::optional<Preset> preset;
        /// In seconds; absent until the first check().
        std::optional<double> until{};
    };

    /// The presets in the bundles once the host has done all that it was asked to do.
    std::vector<StoredPreset> stored() const;
    void await(Awaited awaited);
    void write(const std::filesystem::path& folder, const Preset& preset);
    void erase(const std::filesystem::path& folder, const std::string& name);
    /// A folder that nothing uses once the host has done all that it was asked to do.
    std::filesystem::path newFolder(const std::string& name) const;

    std::filesystem::path user_;
    const PresetWriter* writer_;
    std::vector<Preset> factory_;
    std::vector<Awaited> awaited_;
};

}  // namespace orvalo::effect::ui
