#include "platform/audio/output/PulseLook.h"

namespace orvalo {

PulseLook::PulseLook(std::chrono::milliseconds patience)
    : deadline_(std::chrono::steady_clock::now() + patience),
      loop_(pa_mainloop_new(), pa_mainloop_free),
      context_(loop_ ? pa_context_new(pa_mainloop_get_api(loop_.get()), "Orvalo") : nullptr,
               pa_context_unref) {
    // There is no loop when the system has no descriptor left.
    if (!context_ ||
        pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
        return;
    }
    pa_context_state_t state = pa_context_get_state(context_.get());
    while (PA_CONTEXT_IS_GOOD(state) && state != PA_CONTEXT_READY && turn()) {
        state = pa_context_get_state(context_.get());
    }
    connected_ = state == PA_CONTEXT_READY;
}

PulseLook::~PulseLook() {
    if (context_) {
        pa_context_disconnect(context_.get());
    }
}

std::optional<PulseLook::Sink> PulseLook::defaultSink() {
    std::optional<Sink> sink;
    const auto take = [](pa_context*, const pa_sink_info* info, int end, void* found) {
        if (end == 0) {
            const char* description = info->description;
            *static_cast<std::optional<Sink>*>(found) =
                Sink{info->name, description != nullptr ? description : "", info->sample_spec.rate,
                     info->sample_spec.channels};
        }
    };
    if (!connected_ ||
        !finish(pa_context_get_sink_info_by_name(context_.get(), "@DEFAULT_SINK@", take, &sink))) {
        return std::nullopt;
    }
    return sink;
}

/// Serves the connection once, at most until the deadline; false when that has passed.
bool PulseLook::turn() {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
        deadline_ - std::chrono::steady_clock::now());
    return left.count() > 0 &&
           pa_mainloop_prepare(loop_.get(), static_cast<int>(left.count())) >= 0 &&
           pa_mainloop_poll(loop_.get()) >= 0 && pa_mainloop_dispatch(loop_.get()) >= 0;
}

/// Waits for the operation's end; false when it was not reached.
bool PulseLook::finish(pa_operation* operation) {
    if (operation == nullptr) {
        return false;
    }
    while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING && turn()) {
    }
    const bool done = pa_operation_get_state(operation) == PA_OPERATION_DONE;
    // Its answer would be written where nobody waits any more.
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
    return done;
}

}  // namespace orvalo
