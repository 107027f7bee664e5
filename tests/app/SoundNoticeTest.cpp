#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include "tests/app/ApplicationFixture.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/PrivateJack.h"

namespace orvalo::testing {

namespace {

/// The application with the outputs of a machine whose only sound server is a private JACK.
class SoundNoticeTest : public ApplicationFixture {
  protected:
    SoundNoticeTest() {
        const auto configuration = (folder.path() / "asound.conf").string();
        std::ofstream(configuration) << "defaults.pcm.card 0\n";
        environment["ORVALO_AUDIO_OUTPUT"] = "auto";
        environment["PULSE_SERVER"] = "unix:" + (folder.path() / "nothing").string();
        environment["ALSA_CONFIG_PATH"] = configuration;
    }

    bool isNoticeShown() const {
        const auto names = tree.names();
        return std::ranges::count(names,
                                  "No sound device: playing silently. Connect one, or start a "
                                  "sound server; it is used at once.") == 1;
    }

    /// The number of pixels in the notice's colour in the window.
    static int noticePixels() {
        const auto window = place();
        return Screenshot().count(kNoticeColor, window.x, window.y, window.width, window.height);
    }
    /// Whether a strip of at most 60 pixels in height has that colour.
    static bool isStripDrawn() {
        const int pixels = noticePixels();
        return pixels > 1000 && pixels <= 60 * place().width;
    }

    static constexpr std::uint32_t kNoticeColor = 0xE5A50A;
    PrivateJack jack;
};

TEST_F(SoundNoticeTest, TheUserSeesThatThereIsNoSoundUntilADeviceReturns) {
    start();
    EXPECT_FALSE(isNoticeShown());
    EXPECT_EQ(noticePixels(), 0);
    key("space");
    EXPECT_TRUE(pollUntil([this] { return isNoticeShown() && isStripDrawn(); }));
    auto server = jack.start();
    EXPECT_TRUE(pollUntil([this] { return !isNoticeShown() && noticePixels() == 0; }));
    server.reset();
    EXPECT_TRUE(pollUntil([this] { return isNoticeShown(); }));
    // Also above the plug-in UI.
    key("ctrl+e");
    EXPECT_TRUE(pollUntil([] { return effectPlace().has_value() && isStripDrawn(); }));
    key("space");
    EXPECT_TRUE(pollUntil([this] { return !isNoticeShown() && noticePixels() == 0; }));
    EXPECT_EQ(quit(), 0);
}

}  // namespace

}  // namespace orvalo::testing
