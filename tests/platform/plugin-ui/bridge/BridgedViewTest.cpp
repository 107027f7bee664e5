#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/BridgedAudioUnit.h"
#include "platform/foundation/Bundle.h"
#include "platform/plugin-ui/generic/GenericViewController.h"
#include "tests/platform/audio/bridge/host/PatientLimits.h"
#include "tests/platform/plugin-ui/bridge/EffectServices.h"
#include "tests/platform/plugin-ui/view/StageWindow.h"
#include "tests/platform/plugin-ui/x11/Pointer.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr unsigned kUIColor = 0x336699;

LV2World& world() {
    static const std::string folder = ORVALO_PLUGIN_UI_EFFECTS;
    static auto* effects = new LV2World({{folder}, folder + "/none"});
    return *effects;
}

/// The first label in a tree of widgets; null without one.
GtkWidget* labelBelow(GtkWidget* widget) {
    if (GTK_IS_LABEL(widget)) {
        return widget;
    }
    for (auto* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (auto* label = labelBelow(child); label != nullptr) {
            return label;
        }
    }
    return nullptr;
}

/// A program that starts the effect service, and between holdUp() and release() waits first. In a
/// prefix of its own, which it can see.
class HeldUpService {
  public:
    explicit HeldUpService(const std::string& service) {
        std::filesystem::create_directories(path().parent_path());
        const auto copy = path().parent_path() / "effect-service";
        std::filesystem::copy_file(service, copy);
        std::ofstream(path()) << "#!/bin/sh\nwhile test -e '" << sign().string()
                              << "'; do sleep 0.05; done\nexec '" << copy.string() << "' \"$@\"\n";
        std::filesystem::permissions(path(), std::filesystem::perms::owner_all);
    }
    std::filesystem::path path() const { return folder_.path() / "libexec/orvalo/program"; }

    void holdUp() const { std::ofstream(sign()) << "held up"; }
    void release() const { std::filesystem::remove(sign()); }

  private:
    std::filesystem::path sign() const { return path().parent_path() / "held-up"; }

    TemporaryFolder folder_;
};

/// A UI in an effect service, in a window's stage.
class BridgedView : public ::testing::Test {
  protected:
    static void SetUpTestSuite() { startToolkit(); }

    BridgedView() {
        movePointer(1, 1);
        window_ = std::make_unique<StageWindow>();
    }

    ~BridgedView() override {
        window_ = nullptr;
        controller_ = nullptr;
        unit_ = nullptr;
        EXPECT_TRUE(pollUntil([] { return servicePids().empty(); }));
    }

    void make(const std::string& name) {
        unit_ = std::make_shared<BridgedAudioUnit>(world(), "urn:orvalo:ui:" + name,
                                                   AudioComponentDescription{}, program_, limits_);
        unit_->setRenderingOffline(true);
        unit_->allocateRenderResources(48000);
        controller_ = requestPluginUI(*unit_);
    }

    void show(const std::string& name = "probe") {
        make(name);
        ASSERT_NE(controller_, nullptr);
        window_->embed(*controller_);
        window_->present();
        ASSERT_TRUE(fillsItsStage());
    }

    bool fillsItsStage() {
        return pollUntil([this] {
            const auto place = window_->place();
            return !place.isEmpty() && pixelAt(place.x + 10, place.y + 10) == kUIColor &&
                   rectangleOf(windowAt(place.x + 10, place.y + 10)) == place;
        });
    }

    /// The effect's output for an input of 1.
    float gain() {
        std::array<float, 64> in{};
        std::array<float, 64> out{};
        in.fill(1.0F);
        float* input = in.data();
        float* output = out.data();
        unit_->render({&input, 1, 64}, {&output, 1, 64});
        return out.back();
    }

    /// The line of text in the stage; "" without one.
    std::string message() const {
        auto* label = labelBelow(window_->stage()->widget());
        return label == nullptr || gtk_widget_get_mapped(label) == FALSE
                   ? ""
                   : gtk_label_get_text(GTK_LABEL(label));
    }

    std::string program_ = Bundle::main()->helperURL("effect-service").path();
    BridgeLimits limits_ = unhurriedLimits();
    std::unique_ptr<StageWindow> window_;
    std::shared_ptr<BridgedAudioUnit> unit_;
    std::shared_ptr<UIViewController> controller_;
};

TEST_F(BridgedView, FillsItsStageAndFollowsIt) {
    show();
    gtk_widget_set_size_request(window_->button(), -1, 150);
    ASSERT_TRUE(pollUntil([this] { return gtk_widget_get_height(window_->button()) > 120; }));
    EXPECT_TRUE(fillsItsStage());
    const auto place = window_->place();
    const auto ui = windowAt(place.x + 10, place.y + 10);
    window_->stage()->setHidden(true);
    EXPECT_TRUE(waitForRectangle(ui, {}));
    window_->stage()->setHidden(false);
    EXPECT_TRUE(fillsItsStage());
    EXPECT_EQ(windowAt(place.x + 10, place.y + 10), ui);
}

TEST_F(BridgedView, SetsAControlByClick) {
    show();
    EXPECT_EQ(gain(), 0.5F);
    const auto place = window_->place();
    click(place.x + 130, place.y + 50);
    EXPECT_TRUE(pollUntil([this] { return gain() == 1.3F; }));
    EXPECT_EQ(window_->presses(), 0);
}

TEST_F(BridgedView, IsRestoredWithItsControlsAfterTheServiceWasKilled) {
    show();
    const auto place = window_->place();
    click(place.x + 130, place.y + 50);
    ASSERT_TRUE(pollUntil([this] { return gain() == 1.3F; }));
    const auto first = servicePids();
    const auto ui = windowAt(place.x + 10, place.y + 10);
    CapturedOutput errors(STDERR_FILENO);
    ASSERT_TRUE(killService());
    EXPECT_TRUE(waitForRectangle(ui, {}));
    EXPECT_TRUE(fillsItsStage());
    EXPECT_TRUE(pollUntil([this] { return gain() == 1.3F; }));
    EXPECT_NE(servicePids(), first);
    EXPECT_THAT(errors.text(), HasSubstr("killed by signal 9"));
    click(place.x + 210, place.y + 50);
    EXPECT_TRUE(pollUntil([this] { return gain() == 2.1F; }));
}

TEST_F(BridgedView, IsClosedWhenItHangsWhileTheEffectPlaysOn) {
    limits_.pluginUI = std::chrono::seconds(2);
    show();
    const auto place = window_->place();
    click(place.x + 130, place.y + 50);
    ASSERT_TRUE(pollUntil([this] { return gain() == 1.3F; }));
    const auto first = servicePids();
    const auto ui = windowAt(place.x + 10, place.y + 10);
    CapturedOutput errors(STDERR_FILENO);
    click(place.x + 50, place.y + 50, 2);
    EXPECT_TRUE(waitForRectangle(ui, {}));
    EXPECT_TRUE(pollUntil([this] {
        return message() ==
               "The UI of UI probe is closed: it did not answer for 2 s, the effect plays on.";
    }));
    EXPECT_EQ(gain(), 1.3F);
    EXPECT_EQ(servicePids(), first);
    EXPECT_THAT(errors.text(), HasSubstr("The UI of <urn:orvalo:ui:probe> is closed: it did not "
                                         "answer for 2 s, the effect plays on."));
    // Showing it again replaces the service.
    window_->stage()->setHidden(true);
    runFor(20);
    window_->stage()->setHidden(false);
    EXPECT_TRUE(fillsItsStage());
    EXPECT_NE(servicePids(), first);
    EXPECT_TRUE(pollUntil([this] { return gain() == 1.3F; }));
    EXPECT_THAT(errors.text(), HasSubstr("The effect <urn:orvalo:ui:probe> has a UI that hangs; it "
                                         "is started again with its last state."));
    click(place.x + 210, place.y + 50);
    EXPECT_TRUE(pollUntil([this] { return gain() == 2.1F; }));
}

TEST_F(BridgedView, ShowsAMessageWhileTheServiceRestarts) {
    show();
    auto* label = labelBelow(window_->stage()->widget());
    ASSERT_NE(label, nullptr);
    std::vector<std::string> texts;
    g_signal_connect(label, "notify::label",
                     G_CALLBACK(+[](GtkLabel* changed, GParamSpec*, std::vector<std::string>* to) {
                         to->emplace_back(gtk_label_get_text(changed));
                     }),
                     &texts);
    const CapturedOutput errors(STDERR_FILENO);
    ASSERT_TRUE(killService());
    EXPECT_TRUE(pollUntil([&texts] { return texts.size() >= 2; }));
    EXPECT_TRUE(fillsItsStage());
    EXPECT_THAT(texts, ElementsAre("UI probe has stopped. It is started again.", ""));
    g_signal_handlers_disconnect_by_data(label, &texts);
}

TEST_F(BridgedView, ShowsTheMessageAlsoWhenOpenedDuringARestart) {
    const HeldUpService service(program_);
    program_ = service.path();
    make("probe");
    ASSERT_NE(controller_, nullptr);
    const CapturedOutput errors(STDERR_FILENO);
    service.holdUp();
    ASSERT_TRUE(killService());
    ASSERT_TRUE(pollUntil(
        [&errors] { return errors.text().find("it is started again") != std::string::npos; }));
    window_->embed(*controller_);
    window_->present();
    EXPECT_TRUE(
        pollUntil([this] { return message() == "UI probe has stopped. It is started again."; }));
    service.release();
    EXPECT_TRUE(fillsItsStage());
    EXPECT_EQ(message(), "");
}

TEST_F(BridgedView, IsClosedWhenTheEffectIsGivenUpAndReturnsWhenShownAgain) {
    show();
    const auto place = window_->place();
    for (int death = 0; death < 3; ++death) {
        ASSERT_TRUE(fillsItsStage());
        ASSERT_TRUE(killService());
        ASSERT_TRUE(
            pollUntil([&place] { return pixelAt(place.x + 10, place.y + 10) != kUIColor; }));
    }
    EXPECT_TRUE(pollUntil([] { return servicePids().empty(); }));
    EXPECT_EQ(gain(), 1.0F);
    EXPECT_TRUE(pollUntil([this] {
        return message() ==
               "The UI of UI probe is closed: the effect has died too "
               "often, and playback goes on dry.";
    }));
    EXPECT_TRUE(pollUntil([&place] { return countColors(place) > 2; }));
    // Showing it again starts the effect again.
    window_->stage()->setHidden(true);
    runFor(20);
    window_->stage()->setHidden(false);
    EXPECT_TRUE(fillsItsStage());
    EXPECT_TRUE(pollUntil([this] { return gain() == 0.5F; }));
}

TEST_F(BridgedView, SaysOnceWhyTheUICannotBeMade) {
    const std::string line =
        "The UI of <urn:orvalo:ui:refusing> cannot be shown: it refuses to be made.";
    make("refusing");
    ASSERT_NE(controller_, nullptr);
    const CapturedOutput errors(STDERR_FILENO);
    window_->embed(*controller_);
    window_->present();
    EXPECT_TRUE(pollUntil([&] { return message() == line; })) << message();
    EXPECT_THAT(errors.text(), HasSubstr(line));
    EXPECT_THAT(errors.text(), Not(HasSubstr("is closed")));
}

TEST_F(BridgedView, IsRecreatedInAnotherContainerWhenTheSampleRateChanges) {
    // The UI accesses the effect's instance, which another sample rate replaces.
    show("direct");
    const auto place = window_->place();
    // The container's number, because the UI's window may get its old number again.
    const auto before = parentWindowAt(place.x + 10, place.y + 10);
    unit_->allocateRenderResources(96000);
    EXPECT_TRUE(pollUntil([&] {
        return parentWindowAt(place.x + 10, place.y + 10) != before &&
               pixelAt(place.x + 10, place.y + 10) == kUIColor;
    }));
    EXPECT_TRUE(fillsItsStage());
    click(place.x + 130, place.y + 50);
    EXPECT_TRUE(pollUntil([this] { return gain() == 1.3F; }));
}

TEST_F(BridgedView, ClosesWithItsWindowWhileTheEffectPlaysOn) {
    show();
    window_->close();
    EXPECT_TRUE(pollUntil([this] { return gain() == 0.5F; }));
    EXPECT_EQ(servicePids().size(), 1U);
}

TEST_F(BridgedView, IsMadeFromThePortsWithOneLogLineWhenThereIsNothingToEmbed) {
    for (const std::string name :
         {"none", "toolkit", "demanding", "optional", "missing", "foreign"}) {
        const CapturedOutput errors(2);
        make(name);
        EXPECT_NE(std::dynamic_pointer_cast<GenericViewController>(controller_), nullptr);
        int lines = 0;
        for (const auto& line : errors.lines()) {
            // GLib begins a warning with an empty line; another line names the effect's bundle.
            lines += line.empty() || line.find(" is loaded from ") != std::string::npos ? 0 : 1;
        }
        EXPECT_EQ(lines, 1) << errors.text();
        EXPECT_THAT(errors.text(), HasSubstr("<urn:orvalo:ui:" + name + ">"));
    }
}

}  // namespace
