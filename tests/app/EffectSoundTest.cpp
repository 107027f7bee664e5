#include <gtk/gtk.h>

#include <cmath>
#include <future>

#include "hosting/OrvaloComponent.h"
#include "platform/audio/engine/AVAudioEngine.h"
#include "platform/audio/engine/AVAudioPlayerNode.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/audio/file/AVAudioFile.h"
#include "platform/audio/output/NullOutput.h"
#include "support/view/PinToSuperviewEdges.h"
#include "tests/app/ScreenFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/Desktop.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

namespace {

constexpr std::uint32_t kRate = 48000;
constexpr std::uint32_t kGround = 0x121518;  // The background of the UI.

/// The effect in an engine in manual rendering mode, with its UI on screen.
class EffectSoundTest : public ScreenFixture {
  protected:
    EffectSoundTest() {
        writeWav(folder.path() / "noise.wav", kRate, noise(2, kRate, 1));
        file =
            AVAudioFile::forReading(URL::fileURLWithPath((folder.path() / "noise.wav").string()));
        effect = makeEffect();
        engine->enableManualRenderingMode({kRate, 2});
        engine->attach(player);
        engine->attach(effect);
        engine->connect(player, effect, std::nullopt);
        engine->connect(effect, engine->mainMixerNode(), std::nullopt);
        engine->start();
        player->play();
        showPluginUI();
    }

    static std::shared_ptr<AVAudioUnit> makeEffect() {
        std::promise<std::shared_ptr<AVAudioUnit>> promise;
        AVAudioUnit::instantiate(
            orvaloComponentDescription, AudioComponentInstantiationOptions::none,
            [&promise](const std::shared_ptr<AVAudioUnit>& unit, const std::optional<NSError>&) {
                promise.set_value(unit);
            });
        return promise.get_future().get();
    }

    void showPluginUI() {
        std::shared_ptr<UIViewController> ui;
        effect->auAudioUnit()->requestViewController(
            [&ui](const std::shared_ptr<UIViewController>& controller) { ui = controller; });
        EXPECT_TRUE(waitUntil([&ui] { return ui != nullptr; }));
        screen = std::make_shared<UIViewController>(std::nullopt, nullptr);
        screen->addChild(ui);
        screen->view()->addSubview(ui->view());
        pinToSuperviewEdges(*ui->view());
        ui->didMove(screen);
        window = std::make_shared<UIWindow>(gtk_window_new());
        gtk_window_set_default_size(GTK_WINDOW(window->widget()), 800, 600);
        gtk_window_set_title(GTK_WINDOW(window->widget()), "Sound");
        gtk_window_set_decorated(GTK_WINDOW(window->widget()), FALSE);
        window->setRootViewController(screen);
        window->makeKeyAndVisible();
        act({"search", "--sync", "--onlyvisible", "--name", "^Sound$", "windowmove", "--sync", "20",
             "20"});
        // The UI is drawn when its background is on the display.
        EXPECT_TRUE(waitUntil([] { return Screenshot().at(23, 23) == kGround; }));
    }

    /// The RMS level of one pass of noise after the effect, in dB.
    double loudness() {
        player->scheduleFile(file, std::nullopt, [] {});
        AVAudioPCMBuffer buffer({kRate, 2}, kRate);
        engine->renderOffline(kRate, buffer);
        double sum = 0;
        // Skips the first half, in which changed parameters are still smoothed.
        for (std::uint32_t frame = kRate / 2; frame < kRate; ++frame) {
            const double value = buffer.floatChannelData()[0][frame];
            sum += value * value;
        }
        return 10 * std::log10(sum / (kRate / 2.0));
    }
    /// x, y: fractions of the UI's width and height.
    static void point(double x, double y) {
        act({"mousemove", std::to_string(20 + std::lround(800 * x)),
             std::to_string(20 + std::lround(600 * y))});
    }

    TemporaryFolder folder;
    std::shared_ptr<AVAudioEngine> engine =
        std::make_shared<AVAudioEngine>(std::make_unique<NullOutput>());
    std::shared_ptr<AVAudioPlayerNode> player = std::make_shared<AVAudioPlayerNode>();
    std::shared_ptr<AVAudioUnit> effect;
    std::shared_ptr<AVAudioFile> file;
    std::shared_ptr<UIViewController> screen;
};

TEST_F(EffectSoundTest, ADragAtAKnobChangesTheSound) {
    loudness();
    const auto before = loudness();
    EXPECT_NEAR(loudness(), before, 0.05);
    // Lowers the threshold.
    point(0.072, 0.684);
    act({"mousedown", "1"});
    point(0.072, 0.90);
    act({"mouseup", "1"});
    EXPECT_TRUE(waitUntil([this, before] { return loudness() < before - 3; }));
}

TEST_F(EffectSoundTest, AClickOnTheSwitchBypassesTheEffect) {
    loudness();
    const auto before = loudness();
    const auto dry = -10 * std::log10(3.0);  // Of noise between -1 and 1.
    ASSERT_GT(std::abs(before - dry), 1);
    point(0.945, 0.036);
    act({"click", "1"});
    EXPECT_TRUE(waitUntil([this, dry] { return std::abs(loudness() - dry) < 0.2; }));
}

}  // namespace

}  // namespace orvalo::testing
