#include "platform/audio/output/JackStream.h"

#include <glib.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/audio/output/JackClient.h"

namespace orvalo {

namespace {

constexpr std::chrono::milliseconds kOpeningLimit{2000};
constexpr std::chrono::milliseconds kClosingLimit{500};

}  // namespace

/// The client with its ports and callbacks. Made, opened and destroyed in libjack's turn.
class JackStream::Session : public std::enable_shared_from_this<JackStream::Session> {
  public:
    explicit Session(std::shared_ptr<StreamFeed> feed) : feed_(std::move(feed)) {}
    ~Session() { close(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Starts rendering. Returns the facts of the server as it is now. Leaves nothing open when it
    /// throws.
    OutputFacts open(const OutputFacts& wanted) {
        try {
            start(wanted);
        } catch (const NSError&) {
            close();
            if (!isServerThere()) {
                throw outputError("the JACK server went away", kDeviceWentAway);
            }
            throw;
        }
        return facts_;
    }

    /// Ends rendering. Leaves the client of a PipeWire daemon that has ended open: PipeWire's
    /// jack_client_close() first frees the memory that it shared with the daemon, then the buffers
    /// of connected ports in that memory once more, which the daemon otherwise takes back before;
    /// the C library then ends the program.
    void close() {
        if (client_ && isPipeWire() && jack_deactivate(client_.get()) != 0) {
            // Also the callbacks' data, for calls that have not returned yet. It is gone only after
            // an opening that exceeded its time limit.
            if (auto self = weak_from_this().lock()) {
                static auto* const left = new std::vector<std::shared_ptr<Session>>;
                left->push_back(std::move(self));
            } else {
                static_cast<void>(client_.release());
            }
        } else {
            client_.reset();
        }
        if (isOrphan_.exchange(false)) {
            countOrphanedJackClients(-1);
        }
    }

  private:
    static bool isPipeWire() {
        return std::string_view(jack_get_version_string()).find("PipeWire") !=
               std::string_view::npos;
    }

    void start(const OutputFacts& wanted) {
        client_ = openJackClient("Orvalo");
        auto* const client = client_.get();
        facts_ = wanted;
        facts_.format.sampleRate = jack_get_sample_rate(client);
        facts_.frameCount = jack_get_buffer_size(client);
        jack_set_process_callback(client, process, this);
        jack_set_xrun_callback(client, xrun, this);
        jack_set_buffer_size_callback(client, bufferSizeChanged, this);
        jack_set_sample_rate_callback(client, sampleRateChanged, this);
        jack_on_shutdown(client, serverShutDown, this);
        for (std::uint32_t channel = 0; channel < facts_.format.channelCount; ++channel) {
            const auto name = "outport " + std::to_string(channel);
            ports_.at(channel) = jack_port_register(client, name.c_str(), JACK_DEFAULT_AUDIO_TYPE,
                                                    JackPortIsOutput, 0);
            if (ports_.at(channel) == nullptr) {
                throw outputError("the JACK server has no port left");
            }
        }
        if (jack_activate(client) != 0) {
            throw outputError("the JACK server does not start the stream");
        }
        connectPorts();
    }

    static bool isServerThere() {
        try {
            openIdleJackClient();
            return true;
        } catch (const NSError&) {
            return false;
        }
    }

    void connectPorts() {
        const auto playback = jackPlaybackPorts(client_.get(), facts_.deviceName);
        if (playback.size() < facts_.format.channelCount) {
            throw outputError("the JACK server has lost its playback ports");
        }
        for (std::uint32_t channel = 0; channel < facts_.format.channelCount; ++channel) {
            const int refusal = jack_connect(client_.get(), jack_port_name(ports_.at(channel)),
                                             playback[channel].c_str());
            if (refusal != 0 && refusal != EEXIST) {
                throw outputError("the JACK server does not connect its playback ports");
            }
        }
    }

    static Session& of(void* self) { return *static_cast<Session*>(self); }

    static int process(jack_nframes_t frames, void* self) {
        std::array<float*, kMaximumChannels> channels{};
        const auto count = of(self).facts_.format.channelCount;
        for (std::uint32_t channel = 0; channel < count; ++channel) {
            channels[channel] =
                static_cast<float*>(jack_port_get_buffer(of(self).ports_[channel], frames));
        }
        of(self).feed_->render({channels.data(), count, frames});
        return 0;
    }
    static int xrun(void* self) {
        of(self).feed_->countXruns(1);
        return 0;
    }
    // libjack also reports the values that hold already.
    static int bufferSizeChanged(jack_nframes_t frames, void* self) {
        if (frames != of(self).facts_.frameCount) {
            of(self).feed_->markEnded();
        }
        return 0;
    }
    static int sampleRateChanged(jack_nframes_t rate, void* self) {
        if (rate != of(self).facts_.format.sampleRate) {
            of(self).feed_->markEnded();
        }
        return 0;
    }
    static void serverShutDown(void* self) {
        if (!of(self).isOrphan_.exchange(true)) {
            countOrphanedJackClients(1);
        }
        of(self).feed_->markEnded();
    }

    const std::shared_ptr<StreamFeed> feed_;
    OutputFacts facts_;
    std::array<jack_port_t*, kMaximumChannels> ports_{};
    std::atomic<bool> isOrphan_{false};
    JackClient client_{nullptr, jack_client_close};
};

JackStream::JackStream(const OutputFacts& facts, std::shared_ptr<StreamFeed> feed)
    : session_(std::make_shared<Session>(std::move(feed))) {
    const auto opened = std::make_shared<OutputFacts>();
    const bool isOpen = libjack().finishWithin(
        kOpeningLimit, [session = session_, facts, opened] { *opened = session->open(facts); });
    if (!isOpen) {
        throw outputError("the JACK server does not answer");
    }
    facts_ = *opened;
}

JackStream::~JackStream() {
    if (!libjack().finishWithin(kClosingLimit, [session = session_] { session->close(); })) {
        g_debug("JACK does not close its client; the client is left open.");
    }
}

}  // namespace orvalo
