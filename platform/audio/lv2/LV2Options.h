#pragma once

#include <lv2/options/options.h>

#include <array>
#include <cstdint>
#include <string>

namespace orvalo {

/// The options for instantiation: the sample rate (Hz), the shortest and the longest quantum
/// (frames), the size of the largest sequence buffer (bytes), the context name, and, where all
/// quanta have the same length, that length as the nominal one. Must outlive the instance.
class LV2Options {
  public:
    /// quantum: frames; 0 where quanta differ.
    LV2Options(double sampleRate, std::uint32_t sequenceSize, std::uint32_t quantum,
               std::string contextName);
    LV2Options(const LV2Options&) = delete;
    LV2Options& operator=(const LV2Options&) = delete;

    /// Ends with an option of zeroes.
    LV2_Options_Option* options() { return options_.data(); }

    /// Whether the option of that URI is always among them.
    static bool isOffered(const std::string& uri);

    /// The option for a context name, which must outlive it.
    static LV2_Options_Option contextName(const std::string& name);

  private:
    float sampleRate_;
    std::int32_t shortestBlock_ = 1;
    std::int32_t longestBlock_;
    std::int32_t sequenceSize_;
    std::int32_t nominalBlock_;
    std::string contextName_;
    std::array<LV2_Options_Option, 7> options_;
};

}  // namespace orvalo
