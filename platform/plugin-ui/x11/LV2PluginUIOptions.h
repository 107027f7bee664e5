#pragma once

#include <lv2/options/options.h>

#include <array>
#include <cstdint>
#include <string>

namespace orvalo {

/// The options that a UI is made with: the sample rate (Hz), the rate at which it hears of
/// changes (Hz), the scale of the screen, the window's title, the size of the largest sequence
/// buffer (bytes) and the context's name. Must outlive the UI.
class LV2PluginUIOptions {
  public:
    struct Values {
        double sampleRate;
        double updateRate;
        double scaleFactor;
        std::string windowTitle;
        std::uint32_t sequenceSize;
        std::string contextName;
    };

    explicit LV2PluginUIOptions(Values values);
    LV2PluginUIOptions(const LV2PluginUIOptions&) = delete;
    LV2PluginUIOptions& operator=(const LV2PluginUIOptions&) = delete;

    /// Ends with an option of zeroes.
    LV2_Options_Option* options() { return options_.data(); }

    /// Whether the option of that URI is among them.
    static bool isOffered(const std::string& uri);

  private:
    float sampleRate_;
    float updateRate_;
    float scaleFactor_;
    std::int32_t sequenceSize_;
    std::string windowTitle_;
    std::string contextName_;
    std::array<LV2_Options_Option, 7> options_;
};

}  // namespace orvalo
