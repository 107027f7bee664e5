#pragma once

#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/audio/lv2/ByteRing.h"
#include "platform/audio/lv2/LV2Port.h"
#include "platform/audio/lv2/LV2SequenceBuffer.h"

namespace orvalo {

/// The events that travel between an effect's open UI and its sequence ports, both ways,
/// whole and in order. The UI's side is one thread, the effect's side is the render thread;
/// neither waits, locks or allocates. Outlives instances, which therefore may be replaced.
class LV2EventLink {
  public:
    /// Off the render thread. Each port's ring has room for 16 times its buffer.
    explicit LV2EventLink(const std::vector<LV2Port>& ports);

    /// Hands an event to a sequence input, at the start of the next block that has room for it.
    /// False, and nothing is sent, for another kind of port, an event that the port could never
    /// take, or a full ring. body: size bytes. The UI's thread.
    bool send(std::uint32_t port, LV2_URID type, std::uint32_t size, const void* body);

    /// Whether the UI wants what a sequence output sends; at first it does not. False for
    /// another kind of port. The UI's thread.
    bool setSubscribed(std::uint32_t port, bool isSubscribed);

    /// The next event from the effect, of whichever port has one; null without one. It lives until
    /// the next call. The UI's thread.
    const LV2_Atom* receive(std::uint32_t& port);
    /// How many events of the effect found a full ring since the last call. The UI's thread.
    std::uint32_t takeLostCount() noexcept { return lost_.exchange(0, std::memory_order_relaxed); }

    /// Adds what waits for a sequence input to its buffer, as far as there is room. Render thread.
    void deliver(std::uint32_t port, LV2SequenceBuffer& buffer) noexcept;
    /// Hands over an event of a sequence output, if somebody wants it. Render thread.
    void mirror(std::uint32_t port, const LV2_Atom& event) noexcept;

  private:
    /// Events as atoms, one ring message each, and one atom that is out of the ring.
    struct Lane {
        explicit Lane(const LV2Port& ofPort);

        const LV2_Atom* front() const noexcept {
            return reinterpret_cast<const LV2_Atom*>(words.data());
        }

        const std::uint32_t port;
        const bool isInput;
        const std::uint32_t longest;  ///< Bytes of an atom with its header.
        std::atomic<bool> isSubscribed{false};
        ByteRing ring;
        std::vector<std::uint64_t> words;
        bool hasFront = false;  ///< The reading side's: an atom waits outside the ring.
    };

    Lane* lane(std::uint32_t port, bool isInput) const noexcept;

    std::vector<std::unique_ptr<Lane>> lanes_;  // By port index; null for other ports.
    std::vector<std::uint64_t> sent_;           // The UI's thread's.
    std::atomic<std::uint32_t> lost_{0};
};

/// The links of all open UIs of a unit, as the render thread uses them.
using LV2EventLinks = std::vector<std::shared_ptr<LV2EventLink>>;

}  // namespace orvalo
