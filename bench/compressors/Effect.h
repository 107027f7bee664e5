#pragma once

#include <lilv/lilv.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace orvalo::bench {

struct Stereo {
    std::vector<float> left;
    std::vector<float> right;
};

/// Control values by symbol.
using Settings = std::map<std::string, float>;

/// The effects on the LV2 path.
class EffectWorld {
  public:
    EffectWorld();
    LilvWorld* world() const { return world_.get(); }
    /// Null if it is not installed.
    const LilvPlugin* find(const std::string& uri) const;

  private:
    struct Free {
        void operator()(LilvWorld* world) const { lilv_world_free(world); }
    };
    std::unique_ptr<LilvWorld, Free> world_;
};

/// An instance of any stereo effect at 48 kHz. Its further audio inputs hear silence.
class Effect {
  public:
    static constexpr double rate = 48000.0;
    static constexpr std::uint32_t blockFrames = 256;

    /// Throws std::runtime_error if it cannot be instantiated or has no such control.
    Effect(const EffectWorld& world, const LilvPlugin* plugin, const Settings& settings);
    ~Effect();
    Effect(const Effect&) = delete;
    Effect& operator=(const Effect&) = delete;

    /// The output for a signal of whole blocks, which starts with silence for the latency.
    Stereo process(const Stereo& input);
    /// The latency after a block, in frames.
    std::uint32_t latency() const;

  private:
    struct State;
    std::unique_ptr<State> state_;
};

}  // namespace orvalo::bench
