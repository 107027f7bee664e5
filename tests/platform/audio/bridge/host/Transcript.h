#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "tests/platform/audio/bridge/host/QuantumFeed.h"

namespace orvalo::testing {

/// Classifies the quanta of an effect that halves its input, to the sample: wet, dry, or the fade
/// between the two.
class Transcript {
  public:
    /// bare: dry without a fade, as the service outputs it while it loads a preset. other: none of
    /// the others, which is an error.
    enum class Kind { wet, bare, toDry, dry, toWet, other };

    Kind add(const QuantumFeed::Quantum& quantum);

    const std::vector<Kind>& kinds() const { return kinds_; }
    std::size_t count(Kind kind) const;
    /// Whether no quantum was bare or other.
    bool isSound() const { return count(Kind::other) + count(Kind::bare) == 0; }

  private:
    Kind kindOf(const QuantumFeed::Quantum& quantum) const;

    std::vector<Kind> kinds_;
    std::vector<float> last_;  // The last samples, by channel.
};

std::ostream& operator<<(std::ostream& stream, Transcript::Kind kind);

}  // namespace orvalo::testing
