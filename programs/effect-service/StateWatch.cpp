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
// Saving may use at most a twentieth of the time.
constexpr int kPauseFactor = 20;

}  // namespace

StateWatch::StateWatch(std::shared_ptr<LV2LocalAudioUnit> unit,
                       std::function<bool(const std::string&)> send)
    : unit_(std::move(unit)), send_(std::move(send)), keepsState_(unit_->keepsState()) {
    if (keepsState_) {
        schedule(kPeriod);
    }
}

void StateWatch::sendIfChanged() {
    if (!keepsState_ || !unit_->hasRun()) {
        return;
    }
    try {
        auto state = packState(unit_->stateProperties());
        if (state != sent_ && send_(state)) {
            sent_ = std::move(state);
        }
    } catch (const NSError& error) {
        if (!std::exchange(hasWarned_, true)) {
            g_warning("%s", error.localizedDescription().c_str());
        }
    }
}

void StateWatch::schedule(milliseconds delay) {
    timer_.reset(g_timeout_source_new(static_cast<guint>(delay.count())));
    // Requests and the UI have priority.
    g_source_set_priority(timer_.get(), G_PRIORITY_LOW);
    g_source_set_callback(
        timer_.get(),
        [](void* data) -> gboolean {
            auto& self = *static_cast<StateWatch*>(data);
            const auto start = steady_clock::now();
            self.sendIfChanged();
            const auto taken = std::chrono::ceil<milliseconds>(steady_clock::now() - start);
            self.schedule(std::max(kPeriod, kPauseFactor * taken));
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(timer_.get(), nullptr);
}

}  // namespace orvalo
