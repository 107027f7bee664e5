#include <gtest/gtest.h>

#include <map>
#include <ostream>
#include <string>

#include "platform/audio/component/AVAudioUnitComponentManager.h"
#include "platform/audio/lv2/LV2LocalAudioUnit.h"
#include "tests/platform/audio/lv2/RegisteredEffects.h"
#include "tests/platform/plugin-ui/view/StageWindow.h"
#include "tests/platform/plugin-ui/x11/Effects.h"
#include "tests/platform/plugin-ui/x11/Pointer.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

struct Installed {
    std::string name;
    std::string uri;

    friend void PrintTo(const Installed& effect, std::ostream* out) { *out << effect.uri; }
};

/// Effects of Debian packages, from makers with different UI toolkits, and our own.
const std::vector<Installed>& installed() {
    static const std::vector<Installed> effects{
        {"fil4", "http://gareus.org/oss/lv2/fil4#stereo"},
        {"zcmp", "urn:zamaudio:ZamCompX2"},
        {"orVL", "urn:tessaly:orvalo"},
        {"hall", "https://github.com/michaelwillis/dragonfly-reverb"},
    };
    return effects;
}

class InstalledPluginUI : public ::testing::TestWithParam<Installed> {
  protected:
    static void SetUpTestSuite() {
        std::map<std::string, std::string> effects;
        for (const auto& effect : installed()) {
            // The build stages a bundle that registers it.
            if (effect.name != "orVL") {
                effects.emplace(effect.name, effect.uri);
            }
        }
        registerEffects(effects);
        startToolkit();
    }

    void SetUp() override {
        movePointer(1, 1);
        AudioComponentDescription key;
        for (const char character : GetParam().name) {
            key.componentSubType =
                key.componentSubType << 8U | static_cast<unsigned char>(character);
        }
        const auto found =
            AVAudioUnitComponentManager::sharedAudioUnitComponentManager()->components(key);
        ASSERT_EQ(found.size(), 1U);
        unit_ = std::make_shared<LV2LocalAudioUnit>(LV2World::shared(), found[0]->uri,
                                                    found[0]->audioComponentDescription);
        controller_ = requestPluginUI(*unit_);
        ASSERT_NE(controller_, nullptr);
        window_.embed(*controller_);
    }

    /// Waits until the stage shows a picture.
    bool isDrawn() {
        return pollUntil([this] {
            render(*unit_);
            return countColors(window_.place()) > 8;
        });
    }

    std::vector<float> controlInputs() const {
        std::vector<float> values;
        for (const auto& port : unit_->data().ports) {
            if (port.kind == LV2PortKind::control && port.isInput) {
                values.push_back(unit_->controls().value(port.index));
            }
        }
        return values;
    }

    /// Presses and drags at point after point until a control changes.
    bool dragSomething() {
        const auto place = window_.place();
        const auto before = controlInputs();
        const int height = place.height - 80;
        for (int row = 0; row < height; row += 24) {
            // From the middle, where most UIs have their knobs.
            const int y = 40 + (row + height / 2) % height;
            for (int x = 30; x < place.width - 30; x += 24) {
                movePointer(place.x + x, place.y + y);
                pressButton(1);
                for (int step = 1; step <= 4; ++step) {
                    movePointer(place.x + x + step * 2, place.y + y - step * 5);
                    render(*unit_);
                    runFor(3);
                }
                releaseButton(1);
                runFor(3);
                if (controlInputs() != before) {
                    return true;
                }
            }
        }
        return false;
    }

    StageWindow window_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    std::shared_ptr<UIViewController> controller_;
};

TEST_P(InstalledPluginUI, LeavesTheShortcutsToTheWindow) {
    constexpr unsigned long space = 0x20;
    constexpr unsigned long controlKey = 0xFFE3;
    constexpr unsigned long q = 0x71;
    for (const auto* trigger : {"space", "<Control>q"}) {
        auto* controller = gtk_shortcut_controller_new();
        gtk_shortcut_controller_set_scope(GTK_SHORTCUT_CONTROLLER(controller),
                                          GTK_SHORTCUT_SCOPE_GLOBAL);
        gtk_shortcut_controller_add_shortcut(
            GTK_SHORTCUT_CONTROLLER(controller),
            gtk_shortcut_new(gtk_shortcut_trigger_parse_string(trigger),
                             gtk_signal_action_new("clicked")));
        gtk_widget_add_controller(window_.button(), controller);
    }
    window_.present();
    ASSERT_TRUE(isDrawn());
    ASSERT_TRUE(
        pollUntil([this] { return gtk_window_is_active(GTK_WINDOW(window_.window())) != FALSE; }));
    const auto place = window_.place();
    click(place.x + place.width / 2, place.y + place.height - 20);
    runFor(40);
    strikeKey(space);
    EXPECT_TRUE(pollUntil([this] { return window_.presses() == 1; }));
    holdKey(controlKey, true);
    strikeKey(q);
    holdKey(controlKey, false);
    EXPECT_TRUE(pollUntil([this] { return window_.presses() == 2; }));
    runFor(40);
    EXPECT_EQ(window_.presses(), 2);
}

TEST_P(InstalledPluginUI, IsDrawnMovedHiddenAndClosed) {
    window_.present();
    ASSERT_TRUE(isDrawn());
    EXPECT_TRUE(dragSomething());
    gtk_window_set_default_size(GTK_WINDOW(window_.window()), 1000, 750);
    ASSERT_TRUE(pollUntil([this] { return window_.place().width == 1000; }));
    // GTK still draws the button at its full width.
    const auto button = placeOf(window_.button());
    const auto left = pixelAt(button.x + 20, button.y + 10);
    EXPECT_TRUE(waitForColor(button.x + button.width - 20, button.y + 10, left));
    runFor(40);
    EXPECT_TRUE(isDrawn());
    window_.stage()->setHidden(true);
    runFor(40);
    window_.stage()->setHidden(false);
    EXPECT_TRUE(isDrawn());
    unit_->allocateRenderResources(96000.0);
    runFor(40);
    EXPECT_TRUE(isDrawn());
    window_.close();
    runFor(20);
}

INSTANTIATE_TEST_SUITE_P(Debian, InstalledPluginUI, ::testing::ValuesIn(installed()),
                         [](const auto& item) { return item.param.name; });

}  // namespace
