#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/eventfd.h>

#include <cstdlib>
#include <filesystem>

#include "platform/audio/bridge/host/ServiceRun.h"
#include "tests/platform/audio/bridge/host/FakeEffect.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::HasSubstr;
using ::testing::Not;

namespace fs = std::filesystem;

/// A service that asks for presets: one that is allowed, then others that are not.
class PresetRequestsTest : public ::testing::Test {
  protected:
    PresetRequestsTest() { fs::remove_all(home() / ".lv2"); }

    /// GLib asks for the home folder once in a program.
    static const fs::path& home() {
        static const TemporaryFolder folder;
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread.
        static const int isSet = setenv("HOME", folder.path().c_str(), 1);
        EXPECT_EQ(isSet, 0);
        return folder.path();
    }

    /// Runs the service until it ends. Returns how it ended.
    std::string run(bool writesPresets) {
        LV2Port port;
        port.symbol = "gain";
        port.kind = LV2PortKind::control;
        port.isInput = true;
        const auto limits = patientLimits();
        const ServiceOrder order{.program = fakeServicePath(),
                                 .uri = "urn:fake:presets:0",
                                 .places = {},
                                 .layout = {2, 2, 1},
                                 .ports = {port},
                                 .writesPresets = writesPresets};
        RenderSlot<AUMIDIOutputEventBlock> midiBlock;
        BridgedRender render(midiBlock, 1, 2, limits);
        const auto pluginUI = std::make_shared<PluginUIChannel>(PluginUIChannel::Send());
        LastState last;
        const FileDescriptor wakeup(eventfd(0, EFD_CLOEXEC));
        const CapturedOutput error(2);
        ServiceRun run({order, limits, render, *pluginUI, last});
        while (run.handleEvents(wakeup.get())) {
        }
        auto end = run.finish().what;
        log = error.text();
        return end;
    }

    std::string log;
};

TEST_F(PresetRequestsTest, HostWritesTheAllowedOnes) {
    EXPECT_THAT(run(true), HasSubstr("ended with status 3"));
    std::vector<std::string> names;
    for (const auto& item : fs::recursive_directory_iterator(home())) {
        names.push_back(fs::relative(item.path(), home()));
    }
    EXPECT_THAT(names, ::testing::UnorderedElementsAre(".lv2", ".lv2/good.preset.lv2",
                                                       ".lv2/good.preset.lv2/manifest.ttl",
                                                       ".lv2/good.preset.lv2/preset.ttl"));
    // One line for all that is refused.
    EXPECT_THAT(log, HasSubstr("<urn:fake:presets:0>: The preset of a plug-in's UI is refused: its "
                               "folder has a name that is not allowed."));
    EXPECT_THAT(log, Not(HasSubstr("control")));
}

TEST_F(PresetRequestsTest, ServiceThatMayNotAskIsEnded) {
    EXPECT_THAT(run(false), HasSubstr("sent an invalid message"));
    EXPECT_FALSE(fs::exists(home() / ".lv2"));
}

}  // namespace
