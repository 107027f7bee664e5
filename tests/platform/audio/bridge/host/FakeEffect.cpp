#include "tests/platform/audio/bridge/host/FakeEffect.h"

namespace orvalo::testing {

namespace {

constexpr std::uint32_t kChannels = QuantumFeed::kChannels;
constexpr std::uint32_t kPorts = 3;

ServiceOrder order(const std::string& role, const std::string& program) {
    ServiceOrder order{
        .program = program,
        .uri = "urn:fake:" + role,
        .places = {},
        .layout = {kChannels, kChannels, kPorts},
        .ports = {},
    };
    for (std::uint32_t port = 0; port < kPorts; ++port) {
        order.ports.push_back({.index = port,
                               .symbol = {},
                               .name = {},
                               .kind = LV2PortKind::control,
                               .isInput = true,
                               .minimum = 0.0F,
                               .maximum = 1.0F});
    }
    return order;
}

}  // namespace

std::string fakeServicePath() {
    return ORVALO_FAKE_SERVICE;
}

FakeEffect::FakeEffect(const std::string& role, const BridgeLimits& limits,
                       const std::string& program)
    : render_(midiBlock_, 1, kChannels, limits),
      supervisor_(order(role, program), limits, render_, *pluginUIChannel_) {
    midiBlock_.exchange(std::make_unique<AUMIDIOutputEventBlock>(
        [this](std::int64_t time, std::uint8_t cable, std::int64_t length,
               const std::uint8_t* bytes) {
            events_.push_back({time, cable, std::vector<int>(bytes, bytes + length)});
            return 0;
        }));
    render_.setOffline(true);
    supervisor_.start();
}

void FakeEffect::render(int count) {
    for (int quantum = 0; quantum < count; ++quantum) {
        render();
    }
}

bool FakeEffect::renderUntilWet() {
    constexpr int kMany = 100;
    for (int quantum = 0; quantum < kMany; ++quantum) {
        if (isWet(render())) {
            return true;
        }
    }
    return false;
}

bool FakeEffect::isWet(const Quantum& quantum) {
    for (std::uint32_t channel = 0; channel < kChannels; ++channel) {
        for (std::uint32_t frame = 0; frame < kFrames; ++frame) {
            if (quantum.output[channel][frame] != 0.5F * quantum.input[channel][frame]) {
                return false;
            }
        }
    }
    return true;
}

bool FakeEffect::isDry(const Quantum& quantum) {
    return quantum.output == quantum.input;
}

}  // namespace orvalo::testing
