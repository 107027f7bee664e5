#include "programs/effect-service/StateWatch.h"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/foundation/NSError.h"
#include "programs/effect-service/PackedState.h"

namespace orvalo {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kPeriod{1000};
// Saving takes at most a twentieth of the time.
constexpr int kShare = 20;

}  // namespace

StateWatch::StateWatch(std::shared_ptr<LV2LocalAudioUnit> unit,
                       std::function<bool(const std::string&)> tell)
    : unit_(std::move(unit)), tell_(std::move(tell)), keepsState_(unit_->keepsState()) {
    if (keepsState_) {
        wait(kPeriod);
    }
}

StateWatch::~StateWatch() {
    if (timer_ != nullptr) {
        g_source_destroy(timer_.get());
    }
}

void StateWatch::look() {
    if (!keepsState_) {
        return;
    }
    try {
        auto state = packState(unit_->stateProperties());
        if (state != told_ && tell_(state)) {
            told_ = std::move(state);
        }
    } catch (const NSError& error) {
        if (!std::exchange(hasComplained_, true)) {
            g_warning("%s", error.localizedDescription().c_str());
        }
    }
}

void StateWatch::wait(milliseconds time) {
    timer_.reset(g_timeout_source_new(static_cast<guint>(time.count())));
    // Behind requests and the UI.
    g_source_set_priority(timer_.get(), G_PRIORITY_LOW);
    g_source_set_callback(
        timer_.get(),
        [](void* data) -> gboolean {
            auto& self = *static_cast<StateWatch*>(data);
            const auto start = steady_clock::now();
            self.look();
            const auto taken = std::chrono::ceil<milliseconds>(steady_clock::now() - start);
            self.wait(std::max(kPeriod, kShare * taken));
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(timer_.get(), nullptr);
}

}  // namespace orvalo
