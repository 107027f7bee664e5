#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/plugin-ui/bridge/BridgedEmbeddedPluginUI.h"
#include "tests/platform/audio/bridge/host/PatientLimits.h"
#include "tests/platform/plugin-ui/bridge/EffectServices.h"
#include "tests/platform/plugin-ui/x11/Pointer.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/platform/plugin-ui/x11/Toplevel.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;

constexpr unsigned kColor = 0x336699;
constexpr X11Rect kArea{50, 40, 400, 300};
// kArea in the toplevel, which is at (100, 100).
constexpr X11Rect kOnScreen{150, 140, 400, 300};

LV2World& world() {
    static const std::string folder = ORVALO_SERVICE_EFFECTS;
    static auto* effects = new LV2World({{folder}, folder + "/none"});
    return *effects;
}

/// A UI in an effect service, inside a focused toplevel. The UI sends all its keys on.
class BridgedKeys : public ::testing::Test {
  protected:
    BridgedKeys() : inside_(toplevel_.focusInside()) {
        movePointer(1, 1);
        unit_->allocateRenderResources(48000);
        pluginUI_ = std::make_unique<BridgedEmbeddedPluginUI>(
            connection_, unit_, false,
            EmbeddedPluginUI::Parent{toplevel_.window(), 1.0, kArea.size(), nullptr});
        pluginUI_->onUnusedKey = [this](const X11Key& key) { keys_.push_back(key.code); };
        pluginUI_->place(kArea, kArea);
        pluginUI_->setVisible(true);
    }

    /// Waits until a UI is on screen in another container than the last one.
    bool waitForNewUI() {
        const bool isNew = pollUntil([this] {
            return parentWindowAt(200, 200) != container_ && pixelAt(200, 200) == kColor &&
                   rectangleOf(windowAt(200, 200)) == kOnScreen;
        });
        container_ = parentWindowAt(200, 200);
        return isNew;
    }
    /// Clicks into the UI and strikes a key, which the UI sends on.
    void strike(unsigned long keysym) {
        ASSERT_EQ(keyboardFocus(), inside_);
        click(200, 200);
        ASSERT_TRUE(pollUntil([this] { return keyboardFocus() == toplevel_.window(); }));
        const auto count = keys_.size();
        strikeKey(keysym);
        ASSERT_TRUE(pollUntil([this, count] { return keys_.size() > count; }));
        runFor(20);
    }

    static std::shared_ptr<BridgedAudioUnit> makeUnit() {
        // Effects reach the X server only in programs that show UIs.
        LV2AudioUnit::setPluginUIProvider([](const auto& /*unit*/) { return nullptr; });
        return std::make_shared<BridgedAudioUnit>(
            world(), "urn:orvalo:service:window", AudioComponentDescription{},
            Bundle::main()->helperURL("effect-service").path(), unhurriedLimits());
    }

    Toplevel toplevel_;
    const unsigned long inside_;
    const std::shared_ptr<X11Connection> connection_ = X11Connection::open(g_getenv("DISPLAY"));
    std::shared_ptr<BridgedAudioUnit> unit_ = makeUnit();
    std::unique_ptr<BridgedEmbeddedPluginUI> pluginUI_;
    unsigned long container_ = 0;
    std::vector<unsigned> keys_;
};

TEST_F(BridgedKeys, AreReportedOnceAlsoByARecreatedUI) {
    const CapturedOutput errors(STDERR_FILENO);
    ASSERT_TRUE(waitForNewUI());
    ASSERT_NO_FATAL_FAILURE(strike('a'));
    ASSERT_TRUE(killService());
    ASSERT_TRUE(waitForNewUI());
    ASSERT_NO_FATAL_FAILURE(strike('b'));
    // The UI accesses the effect's instance, which another sample rate replaces.
    unit_->allocateRenderResources(96000);
    ASSERT_TRUE(waitForNewUI());
    ASSERT_NO_FATAL_FAILURE(strike('c'));
    EXPECT_THAT(keys_, ElementsAre(keycode('a'), keycode('b'), keycode('c')));
}

}  // namespace
