#pragma once

#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/audio/lv2/ByteRing.h"
#include "platform/audio/lv2/LV2Port.h"
#include "platform/audio/lv2/LV2Sequence.h"

namespace orvalo {

/// Events between an effect's open UI and its sequence ports, in both directions and in order. One
/// UI thread and the render thread; neither blocks, locks or allocates. Instances may be replaced
/// while a link exists.
class LV2EventLink {
  public:
    /// Each port's ring holds 16 times its buffer. Off the render thread.
    explicit LV2EventLink(const std::vector<LV2Port>& ports);

    /// Sends an event to a sequence input, at the start of the next quantum with room for it. False
    /// for another kind of port, an event too large for the port, or a full ring. body: size bytes.
    /// UI thread.
    bool send(std::uint32_t port, LV2_URID type, std::uint32_t size, const void* body);

    /// Whether the UI receives the events of a sequence output; at first it does not. Returns false
    /// for another kind of port. UI thread.
    bool setSubscribed(std::uint32_t port, bool isSubscribed);

    /// The next event from any sequence output, valid until the next call; null without one. Sets
    /// port. UI thread.
    const LV2_Atom* receive(std::uint32_t& port);
    /// The events dropped since the last call because a ring was full. UI thread.
    std::uint32_t takeLostCount() noexcept { return lost_.exchange(0, std::memory_order_relaxed); }

    /// Moves waiting events of a sequence input into its buffer while they fit. Render thread.
    void deliver(std::uint32_t port, LV2SequenceBuffer& buffer) noexcept;
    /// Sends an event of a sequence output to the UI, if it is subscribed. Render thread.
    void mirror(std::uint32_t port, const LV2_Atom& event) noexcept;

  private:
    /// The events of one port: atoms, one ring message each, and the atom read last.
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
        bool hasFront = false;  ///< Reading thread: the atom read last is not delivered yet.
    };

    Lane* lane(std::uint32_t port, bool isInput) const noexcept;

    std::vector<std::unique_ptr<Lane>> lanes_;  // By port index; null for other ports.
    std::vector<std::uint64_t> sent_;           // UI thread only.
    std::atomic<std::uint32_t> lost_{0};
};

/// The links of all open UIs of an effect.
using LV2EventLinks = std::vector<std::shared_ptr<LV2EventLink>>;

}  // namespace orvalo
