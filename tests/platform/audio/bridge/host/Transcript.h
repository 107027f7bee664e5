#pragma once

#include <cstddef>
#include <iosfwd>
#include <vector>

#include "tests/platform/audio/bridge/host/QuantumFeed.h"

namespace orvalo::testing {

/// What quantum after quantum came out of an effect that halves its input, sample by sample: its
/// output, the input, or the one fade from one to the other that is due.
class Transcript {
  public:
    /// bare: the input in place of the effect's output, as the effect's own process gives it while
    /// it loads a preset.
    enum class Kind { wet, bare, toDry, dry, toWet, other };

    Kind add(const QuantumFeed::Quantum& quantum);

    const std::vector<Kind>& kinds() const { return kinds_; }
    std::size_t count(Kind kind) const;
    /// Whether nothing has come out that does not belong there.
    bool isSound() const { return count(Kind::other) + count(Kind::bare) == 0; }

  private:
    Kind kindOf(const QuantumFeed::Quantum& quantum) const;

    std::vector<Kind> kinds_;
    std::vector<float> last_;  // The last samples, by channel.
};

std::ostream& operator<<(std::ostream& stream, Transcript::Kind kind);

}  // namespace orvalo::testing
