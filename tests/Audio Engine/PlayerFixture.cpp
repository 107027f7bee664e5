#include "tests/Audio Engine/PlayerFixture.h"

#include <fstream>

#include "platform/audio/signal/AVAudioPCMBuffer.h"
#include "tests/testing/WavFile.h"

namespace orvalo::testing {

namespace {

std::shared_ptr<AVAudioEngine> manualEngine(double rate) {
    auto engine = std::make_shared<AVAudioEngine>();
    engine->enableManualRenderingMode({rate, 2});
    return engine;
}

}  // namespace

PlayerFixture::PlayerFixture()
    : engine(manualEngine(kRate)), player(std::make_shared<AUEnginePlayer>(engine)), peer{*player} {
    player->delegate = delegate;
}

PlayerFixture::~PlayerFixture() {
    player->stop();
    settle();
}

URL PlayerFixture::constantFile(const std::string& name, double seconds, std::uint32_t channels) {
    const auto file = folder.path() / name;
    const auto frames = static_cast<std::size_t>(seconds * kRate);
    writeWav(file, kRate, Signal(channels, std::vector<float>(frames, kFileValue)));
    return URL::fileURLWithPath(file.string());
}

URL PlayerFixture::damagedFile(const std::string& name) {
    const auto file = folder.path() / name;
    std::ofstream(file) << "no audio at all";
    return URL::fileURLWithPath(file.string());
}

std::shared_ptr<AVAudioUnit> PlayerFixture::unit(float value,
                                                 std::vector<std::string> midiOutputNames) {
    return std::make_shared<AVAudioUnit>(
        std::make_shared<ConstantUnit>(value, std::move(midiOutputNames)));
}

float PlayerFixture::render(double seconds) {
    AVAudioPCMBuffer buffer({kRate, 2}, 441);
    for (auto left = static_cast<std::uint32_t>(seconds * kRate); left > 0;) {
        const auto count = std::min(left, buffer.frameCapacity());
        engine->renderOffline(count, buffer);
        left -= count;
    }
    return buffer.floatChannelData()[0][buffer.frameLength - 1];
}

void PlayerFixture::settle() {
    peer.queue()->sync([] {});
    drainMainQueue();
}

Lines PlayerFixture::newLines() {
    const auto lines = output.lines();
    Lines result(lines.begin() + static_cast<std::ptrdiff_t>(seen_), lines.end());
    seen_ = lines.size();
    return result;
}

}  // namespace orvalo::testing
