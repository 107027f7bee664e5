#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "effect/ui/PresetFiles.h"
#include "tests/testing/PrivateJack.h"
#include "tests/testing/Program.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;
using namespace orvalo::testing;
using ::testing::Contains;
using ::testing::IsSupersetOf;

/// What jalv prints for its commands, on a private JACK server with the dummy driver.
class JalvTest : public ::testing::Test {
  protected:
    JalvTest() {
        // NOLINTBEGIN(concurrency-mt-unsafe): the process has one thread.
        setenv("HOME", home_.path().c_str(), 1);
        setenv("LV2_PATH", (home_.path().string() + "/.lv2:" + EFFECT_LV2_PATH).c_str(), 1);
        // NOLINTEND(concurrency-mt-unsafe)
    }

    std::vector<std::string> jalv(const std::string& commands) const {
        const auto server = jack_.start();
        std::vector<std::string> lines;
        // It ends with an error until the server is there.
        EXPECT_TRUE(pollUntil([&] {
            // From 1.6.8 on, jalv prints values on standard error.
            Program program({"sh", "-c", "printf '" + commands + R"(quit\n' | jalv "$0" 2>&1)",
                             "urn:tessaly:orvalo"});
            lines = program.readAll();
            return program.wait() == 0;
        }));
        return lines;
    }
    std::filesystem::path user() const { return home_.path() / ".lv2"; }

  private:
    TemporaryFolder home_;
    PrivateJack jack_;
};

TEST_F(JalvTest, ListsAndLoadsWhatTheUISaves) {
    PresetFiles files(EFFECT_BUNDLE, nullptr);
    ASSERT_EQ(files.save({.name = "My sound",
                          .values = {{Parameter::threshold, -33.5F}, {Parameter::mix, 12.25F}},
                          .isUser = true},
                         "My sound"),
              "");
    const auto uri = "file://" + (user() / "orvalo-My_sound.preset.lv2/preset.ttl").string();
    const auto lines = jalv("presets\\npreset " + uri + "\\ncontrols\\n");
    EXPECT_THAT(lines, Contains(uri + " (My sound)"));
    EXPECT_THAT(lines, IsSupersetOf({"threshold = -33.500000", "mix = 12.250000"}));
}

}  // namespace
