#include <limits>

#include "platform/audio/engine/AVAudioSession.h"
#include "platform/foundation/NSError.h"
#include "tests/Audio Engine/FatalEnd.h"
#include "tests/Audio Engine/PlayerFixture.h"

namespace orvalo::testing {
namespace {

class PlayerFatal : public PlayerFixture {
  protected:
    void startRefusedBy(std::shared_ptr<AVAudioSession> session) {
        AVAudioSession::setSharedInstance(std::move(session));
        player->start();
    }
};

/// A session that refuses one of its two operations.
class RefusingSession : public AVAudioSession {
  public:
    explicit RefusingSession(bool refusesCategory) : refusesCategory_(refusesCategory) {}

    void setCategory(AVAudioSessionCategory /*category*/, AVAudioSessionMode /*mode*/,
                     AVAudioSessionCategoryOptions /*options*/) override {
        if (refusesCategory_) {
            throw NSError("NSOSStatusErrorDomain", 561015905, "Session activation failed");
        }
    }
    void setActive(bool /*active*/, AVAudioSessionSetActiveOptions /*options*/) override {
        throw NSError("NSOSStatusErrorDomain", 560030580, "The session is busy");
    }

  private:
    const bool refusesCategory_;
};

/// A device that cannot be opened.
class MissingOutput : public AudioOutput {
  public:
    AVAudioFormat format() override { return {}; }
    void start(AudioOutputSource& /*source*/) override {
        throw NSError("AudioOutput", 7, "There is no such device.");
    }
    void stop() override {}
    std::uint64_t xrunCount() const override { return 0; }
};

TEST_F(PlayerFatal, LoadingAnAbsentAddressEndsTheProgram) {
    EXPECT_FATAL_ERROR(player->load(std::nullopt), kFoundNil);
}

TEST_F(PlayerFatal, ARefusedCategoryEndsTheProgram) {
    EXPECT_FATAL_ERROR(startRefusedBy(std::make_shared<RefusingSession>(true)),
                       "AUEnginePlayer::ERROR: Could not set audio session active true. system "
                       "error: Error Domain=NSOSStatusErrorDomain Code=561015905 \"Session "
                       "activation failed\"");
}

TEST_F(PlayerFatal, ARefusedActivationEndsTheProgram) {
    EXPECT_FATAL_ERROR(startRefusedBy(std::make_shared<RefusingSession>(false)),
                       "AUEnginePlayer::ERROR: Could not set audio session active true. system "
                       "error: Error Domain=NSOSStatusErrorDomain Code=560030580 \"The session is "
                       "busy\"");
}

TEST_F(PlayerFatal, ARefusedDeactivationEndsTheProgram) {
    EXPECT_FATAL_ERROR(
        {
            player->start();
            AVAudioSession::setSharedInstance(std::make_shared<RefusingSession>(false));
            player->stop();
        },
        "AUEnginePlayer::ERROR: Could not set audio session active false. system error: Error "
        "Domain=NSOSStatusErrorDomain Code=560030580 \"The session is busy\"");
}

TEST_F(PlayerFatal, AnEngineThatDoesNotStartEndsTheProgram) {
    EXPECT_FATAL_ERROR(
        std::make_shared<AUEnginePlayer>(
            std::make_shared<AVAudioEngine>(std::make_unique<MissingOutput>()))
            ->start(),
        "AUEnginePlayer::ERROR: Could not start audio engine. error: Error Domain=AudioOutput "
        "Code=7 \"There is no such device.\"");
}

TEST_F(PlayerFatal, APassCountBeyond64BitsEndsTheProgram) {
    player->load(constantFile("a.wav"));
    peer.loopCount() = std::numeric_limits<std::int64_t>::max() - 1;
    peer.countPass();
    EXPECT_EQ(peer.loopCount(), std::numeric_limits<std::int64_t>::max());
    EXPECT_FATAL_ERROR(peer.countPass(), "Integer overflow in an addition.");
}

}  // namespace
}  // namespace orvalo::testing
