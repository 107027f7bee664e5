#include "tests/programs/effect-service/HostedEffect.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "platform/audio/bridge/wire/Futex.h"
#include "platform/audio/bridge/wire/SharedEvents.h"

namespace orvalo::testing {

namespace {

constexpr std::uint32_t kNumber = 1000;
constexpr std::chrono::seconds kPatience{30};

}  // namespace

HostedEffect::HostedEffect(const std::string& folder, const std::string& uri)
    : world_({{folder}, folder + "/none"}),
      data_(LV2PluginData::read(LV2World::Access(world_), uri)),
      audio_(SharedAudio::make({data_.inputChannelCount, data_.outputChannelCount,
                                static_cast<std::uint32_t>(data_.ports.size())})) {
    request.number = kNumber;
    request.uri = uri;
    request.bundles = world_.bundlesOf(uri);
    request.stateFolder = stateFolder_.path();
    request.inputChannelCount = audio_.layout().inputChannelCount;
    request.outputChannelCount = audio_.layout().outputChannelCount;
    request.portCount = audio_.layout().portCount;
}

std::string HostedEffect::instantiate() {
    service.send(request, audio_.descriptor());
    return service.answer(kNumber);
}

void HostedEffect::mustInstantiate() {
    if (const auto error = instantiate(); !error.empty()) {
        throw std::runtime_error(error);
    }
}

Channels HostedEffect::render(const Channels& input, const std::vector<std::uint32_t>& blockLengths,
                              std::size_t frameCount) {
    Channels output(audio_.layout().outputChannelCount, std::vector<float>(frameCount));
    std::size_t turn = 0;
    for (std::size_t done = 0; done < frameCount;) {
        const auto count =
            std::min<std::size_t>(blockLengths[turn++ % blockLengths.size()], frameCount - done);
        const auto frames = static_cast<std::uint32_t>(count);
        for (std::size_t channel = 0; channel < input.size(); ++channel) {
            std::copy_n(input[channel].data() + done, count,
                        audio_.input(frames).channels[channel]);
        }
        renderQuantum(frames);
        for (std::size_t channel = 0; channel < output.size(); ++channel) {
            std::copy_n(audio_.output(frames).channels[channel], count,
                        output[channel].data() + done);
        }
        done += count;
    }
    return output;
}

void HostedEffect::renderQuantum(std::uint32_t frameCount) {
    auto& control = audio_.control();
    control.frameCount.store(frameCount);
    control.request.store(++quantum_);
    Futex::wake(control.request);
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (control.response.load() != quantum_) {
        Futex::wait(control.response, quantum_ - 1, deadline);
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("The service does not answer a quantum.");
        }
    }
    takeEvents(frameCount);
    sampleTime_ += frameCount;
}

void HostedEffect::takeEvents(std::uint32_t frameCount) {
    std::vector<std::byte> copy(SharedAudio::kEventAreaSize + 3);
    SharedEventReader reader(audio_.events(), audio_.control().eventBytes.load(), frameCount, copy);
    for (SharedEvent event; reader.read(event);) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(event.bytes.data());
        const auto count = std::max<std::size_t>(event.bytes.size(), 3);
        events.push_back({sampleTime_ + event.frame, event.cable,
                          std::vector<int>(bytes, bytes + count),
                          static_cast<std::int64_t>(event.bytes.size())});
    }
}

float HostedEffect::control(const std::string& symbol) const {
    const auto port = std::find_if(data_.ports.begin(), data_.ports.end(),
                                   [&](const LV2Port& each) { return each.symbol == symbol; });
    return audio_.controlValues()[port->index].load();
}

}  // namespace orvalo::testing
