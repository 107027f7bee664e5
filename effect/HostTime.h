#pragma once

#include <cstdint>
#include <optional>

#include "effect/Uris.h"

namespace orvalo::effect {

/// The host's musical time, from the time:Position objects that it sends.
class HostTime {
  public:
    explicit HostTime(const Uris& uris) : uris_(uris) {}

    /// Reads an object; false if it is none, or if tempo or position are still unknown.
    /// bytes: the body of the object's atom.
    bool read(const std::uint8_t* bytes, std::uint32_t size);

    /// Position of the last object in quarter notes; absent if that object had none.
    std::optional<double> quarters() const;
    /// 0 while the transport is stopped.
    double quartersPerSecond() const;

    void forget();

  private:
    void readProperty(LV2_URID key, double value);

    Uris uris_;
    bool hasPosition_ = false;
    // Of the last object.
    std::optional<double> beat_;
    std::optional<double> bar_;
    std::optional<double> barBeat_;
    // The last known.
    double beatsPerBar_ = 4.0;
    double beatUnit_ = 4.0;
    double beatsPerMinute_ = 0.0;
    double speed_ = 1.0;
};

}  // namespace orvalo::effect
