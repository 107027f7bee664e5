#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "effect/ui/PresetBundle.h"
#include "effect/ui/PresetWriter.h"
#include "effect/ui/model/PresetStore.h"

namespace orvalo::effect::ui {

/// The presets of the effect's bundle, and the user's in `~/.lv2`, each in its own bundle. A
/// preset with the name of another one is left out.
class PresetFiles final : public PresetStore {
  public:
    /// bundle: the effect's. writer: of a host that writes the files; null if the UI writes them.
    PresetFiles(const std::filesystem::path& bundle, const PresetWriter* writer);

    std::vector<Preset> read() override;
    std::string save(const Preset& preset) override;
    std::string remove(const std::string& name) override;

    /// Whether the host has not done all that it was asked to do.
    bool isWaiting() const { return !awaited_.empty(); }
    /// Looks for what the host has done. Returns a complaint if it did not do something in time.
    /// now: in seconds.
    std::string check(double now);

  private:
    /// What the host was asked to do: to write a preset, or to remove it.
    struct Awaited {
        std::string name;
        std::filesystem::path folder;
        std::optional<Preset> preset;
        std::optional<double> until{};
    };

    void write(const std::filesystem::path& folder, const Preset& preset);
    void erase(const std::filesystem::path& folder, const std::string& name);
    std::filesystem::path folderFor(const std::string& name,
                                    const std::vector<StoredPreset>& stored) const;

    std::filesystem::path user_;
    const PresetWriter* writer_;
    std::vector<Preset> factory_;
    std::vector<Awaited> awaited_;
};

}  // namespace orvalo::effect::ui
