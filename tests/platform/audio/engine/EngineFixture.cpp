#include "tests/platform/audio/engine/EngineFixture.h"

#include <algorithm>
#include <chrono>

#include "platform/audio/output/NullOutput.h"

namespace orvalo::testing {

std::function<void()> Completions::handler(std::string name) {
    return [this, name = std::move(name)] {
        const std::lock_guard lock(mutex_);
        calls_.push_back({name, std::this_thread::get_id()});
        called_.notify_all();
    };
}

std::vector<std::string> Completions::names() const {
    const std::lock_guard lock(mutex_);
    std::vector<std::string> result;
    for (const auto& call : calls_) {
        result.push_back(call.name);
    }
    return result;
}

std::thread::id Completions::thread(std::size_t index) const {
    const std::lock_guard lock(mutex_);
    return calls_.at(index).thread;
}

void Completions::waitFor(std::size_t count) {
    std::unique_lock lock(mutex_);
    EXPECT_TRUE(
        called_.wait_for(lock, std::chrono::minutes(1), [&] { return calls_.size() >= count; }));
}

void EngineFixture::start(const AVAudioFormat& format) {
    format_ = format;
    engine = std::make_shared<AVAudioEngine>(std::make_unique<NullOutput>());
    engine->enableManualRenderingMode(format);
    player = std::make_shared<AVAudioPlayerNode>();
    engine->attach(player);
    engine->start();
}

void EngineFixture::startLive(const AVAudioFormat& format) {
    format_ = format;
    auto stepped = std::make_unique<StepOutput>(format);
    output = stepped.get();
    engine = std::make_shared<AVAudioEngine>(std::move(stepped));
    player = std::make_shared<AVAudioPlayerNode>();
    engine->attach(player);
    engine->start();
}

void EngineFixture::reset() {
    player.reset();
    engine.reset();
}

Signal EngineFixture::render(std::size_t frames) {
    Signal rendered(format_.channelCount);
    AVAudioPCMBuffer buffer(format_, 10000);
    while (frames > 0) {
        // 1, 38, 1407, 9272, ...: small, odd and larger than any slice.
        quantum_ = (quantum_ * 37 + 1) % 9999 + 1;
        const auto count = static_cast<std::uint32_t>(std::min<std::size_t>(frames, quantum_));
        engine->renderOffline(count, buffer);
        EXPECT_EQ(buffer.frameLength, count);
        for (std::size_t channel = 0; channel < rendered.size(); ++channel) {
            const float* samples = buffer.floatChannelData()[channel];
            rendered[channel].insert(rendered[channel].end(), samples, samples + count);
        }
        frames -= count;
    }
    return rendered;
}

std::filesystem::path EngineFixture::wav(const std::string& name, std::uint32_t rate,
                                         const Signal& signal) {
    writeWav(folder.path() / name, rate, signal);
    return folder.path() / name;
}

std::shared_ptr<AVAudioFile> EngineFixture::open(const std::filesystem::path& path) {
    return AVAudioFile::forReading(URL::fileURLWithPath(path.string()));
}

Signal EngineFixture::silence(std::size_t channels, std::size_t frames) {
    Signal result(channels, std::vector<float>(frames, 0.0F));
    return result;
}

Signal EngineFixture::part(const Signal& signal, std::size_t from, std::size_t count) {
    Signal result;
    for (const auto& channel : signal) {
        const auto start = channel.begin() + static_cast<std::ptrdiff_t>(from);
        result.emplace_back(start, start + static_cast<std::ptrdiff_t>(count));
    }
    return result;
}

Signal EngineFixture::repeated(const Signal& signal, int times) {
    Signal result(signal.size());
    for (std::size_t channel = 0; channel < signal.size(); ++channel) {
        for (int count = 0; count < times; ++count) {
            result[channel].insert(result[channel].end(), signal[channel].begin(),
                                   signal[channel].end());
        }
    }
    return result;
}

}  // namespace orvalo::testing
