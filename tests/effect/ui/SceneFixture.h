#pragma once

#include <gtest/gtest.h>

#include <vector>

#include "effect/ui/model/Control.h"
#include "effect/ui/model/Editor.h"
#include "effect/ui/model/Scene.h"
#include "tests/effect/ui/RecordingHost.h"

namespace orvalo::testing {

/// A scene of natural size with two presets, and a recording host.
class SceneFixture : public ::testing::Test {
  protected:
    using Parameter = effect::Parameter;
    using Calls = RecordingHost::Calls;

    SceneFixture() : editor(scene, host) {
        scene.layout = effect::ui::Layout::of(640.0, 480.0, 1.0);
        scene.presets = effect::ui::PresetChoice(
            {{"First", {{Parameter::threshold, -20.0F}, {Parameter::ratio, 8.0F}}},
             {"Second", {{Parameter::threshold, -30.0F}, {Parameter::ratio, 4.0F}}}});
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
    effect::ui::Editor editor;
};

}  // namespace orvalo::testing
