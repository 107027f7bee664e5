#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/Editor.h"
#include "effect/ui/model/Scene.h"
#include "tests/effect/ui/RecordingHost.h"

namespace orvalo::testing {

/// Presets in memory.
class MemoryPresetStore final : public effect::ui::PresetStore {
  public:
    std::vector<effect::ui::Preset> read() override {
        auto all = factory;
        for (const auto& [name, preset] : users) {
            all.push_back(preset);
        }
        return all;
    }
    std::string save(const effect::ui::Preset& preset, const std::string& replaced) override {
        if (complaint.empty()) {
            users.erase(replaced);
            users[preset.name] = preset;
        }
        return complaint;
    }
    std::string remove(const std::string& name) override {
        if (complaint.empty()) {
            users.erase(name);
        }
        return complaint;
    }

    std::vector<effect::ui::Preset> factory;
    std::map<std::string, effect::ui::Preset> users;
    /// Of every change.
    std::string complaint;
};

/// A scene of natural size with Default and two presets, and a recording host.
class SceneFixture : public ::testing::Test {
  protected:
    using Parameter = effect::Parameter;
    using Calls = RecordingHost::Calls;

    SceneFixture() : editor(scene, host, store) {
        scene.layout = effect::ui::Layout::of(640.0, 480.0, 1.0);
        store.factory = {{"First", {{Parameter::threshold, -20.0F}, {Parameter::ratio, 8.0F}}},
                         {"Second", {{Parameter::threshold, -30.0F}, {Parameter::ratio, 4.0F}}}};
        editor.readPresets();
        scene.markDrawn();
    }

    float value(Parameter parameter) const { return scene.values[parameter]; }

    bool isTouched(Parameter parameter) const {
        return scene.allChanged || scene.changed.test(effect::ui::partOf(parameter));
    }
    bool isTouched(effect::ui::Part part) const {
        return scene.allChanged || scene.changed.test(static_cast<std::size_t>(part));
    }

    effect::ui::Scene scene;
    RecordingHost host;
    MemoryPresetStore store;
    effect::ui::Editor editor;
};

}  // namespace orvalo::testing
