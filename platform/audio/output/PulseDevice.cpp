#include "platform/audio/output/PulseDevice.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <optional>
#include <utility>

#include "platform/audio/output/RtAudioStream.h"

namespace orvalo {

namespace {

constexpr std::chrono::milliseconds kProbeLimit{500};

/// A short connection to the PulseAudio server that already runs. One thread.
class Connection {
  public:
    /// Throws NSError when no server answers within kProbeLimit.
    Connection();
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    /// The sink that streams go to unless they name another. Throws NSError when there is none.
    OutputFacts defaultSink();
    /// Throws NSError when a sink or source has no description: RtAudio would crash.
    void checkDescriptions();

  private:
    bool iterate();
    void finish(pa_operation* operation);

    const std::chrono::steady_clock::time_point deadline_ =
        std::chrono::steady_clock::now() + kProbeLimit;
    const std::unique_ptr<pa_mainloop, void (*)(pa_mainloop*)> loop_{pa_mainloop_new(),
                                                                     pa_mainloop_free};
    // pa_mainloop_new() fails when the process can open no more descriptors.
    const std::unique_ptr<pa_context, void (*)(pa_context*)> context_{
        loop_ ? pa_context_new(pa_mainloop_get_api(loop_.get()), "Orvalo") : nullptr,
        pa_context_unref};
};

/// The rate to ask for: the sink's own where RtAudio's PulseAudio streams offer it.
double offeredRate(std::uint32_t sinkRate) {
    constexpr std::array<std::uint32_t, 7> kOffered{8000, 16000, 22050, 32000, 44100, 48000, 96000};
    return std::find(kOffered.begin(), kOffered.end(), sinkRate) != kOffered.end() ? sinkRate
                                                                                   : 48000;
}

Connection::Connection() {
    if (context_) {
        pa_context_connect(context_.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr);
        while (PA_CONTEXT_IS_GOOD(pa_context_get_state(context_.get())) &&
               pa_context_get_state(context_.get()) != PA_CONTEXT_READY && iterate()) {
        }
    }
    if (!context_ || pa_context_get_state(context_.get()) != PA_CONTEXT_READY) {
        throw outputError("no PulseAudio server is running");
    }
}

Connection::~Connection() {
    pa_context_disconnect(context_.get());
}

OutputFacts Connection::defaultSink() {
    std::optional<OutputFacts> found;
    const auto take = [](pa_context*, const pa_sink_info* info, int end, void* to) {
        if (end == 0) {
            const auto& spec = info->sample_spec;
            static_cast<std::optional<OutputFacts>*>(to)->emplace(OutputFacts{
                .format = {offeredRate(spec.rate), std::min(std::uint32_t{spec.channels}, 2U)},
                .deviceName = info->name});
        }
    };
    finish(pa_context_get_sink_info_by_name(context_.get(), "@DEFAULT_SINK@", take, &found));
    if (!found) {
        throw outputError("the PulseAudio server has no sink");
    }
    return *found;
}

/// For pa_context_get_sink_info_list() and pa_context_get_source_info_list(): stores the name of
/// the first device without a description.
template <typename Info>
void findUndescribed(pa_context* /*context*/, const Info* info, int end, void* found) {
    auto& name = *static_cast<std::string*>(found);
    if (end == 0 && name.empty() &&
        pa_proplist_gets(info->proplist, PA_PROP_DEVICE_DESCRIPTION) == nullptr) {
        name = info->name;
    }
}

void Connection::checkDescriptions() {
    std::string undescribed;
    finish(
        pa_context_get_sink_info_list(context_.get(), findUndescribed<pa_sink_info>, &undescribed));
    finish(pa_context_get_source_info_list(context_.get(), findUndescribed<pa_source_info>,
                                           &undescribed));
    if (!undescribed.empty()) {
        throw outputError("the PulseAudio server's device \"" + undescribed +
                          "\" has no description");
    }
}

/// Serves the connection until the operation has ended or the deadline has passed.
void Connection::finish(pa_operation* operation) {
    if (operation != nullptr) {
        while (pa_operation_get_state(operation) == PA_OPERATION_RUNNING && iterate()) {
        }
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
}

/// Serves the connection once; false when the deadline has passed.
bool Connection::iterate() {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(
        deadline_ - std::chrono::steady_clock::now());
    return left.count() > 0 &&
           pa_mainloop_prepare(loop_.get(), static_cast<int>(left.count())) >= 0 &&
           pa_mainloop_poll(loop_.get()) >= 0 && pa_mainloop_dispatch(loop_.get()) >= 0;
}

}  // namespace

OutputFacts PulseDevice::probe() {
    Connection connection;
    connection.checkDescriptions();
    return connection.defaultSink();
}

std::unique_ptr<OutputStream> PulseDevice::open(const OutputFacts& facts,
                                                std::shared_ptr<StreamFeed> feed) {
    return std::make_unique<RtAudioStream>(RtAudio::LINUX_PULSE, facts, std::move(feed));
}

}  // namespace orvalo
