#include "platform/audio/output/JackDevice.h"

#include <RtAudio.h>
#include <jack/jack.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <utility>

#include "platform/audio/output/LibraryMessages.h"
#include "platform/audio/output/RtAudioStream.h"
#include "platform/audio/output/Turns.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

// Many times what a server takes on a machine that is not busy.
constexpr std::chrono::milliseconds kServerPatience{2000};

/// Never destroyed: a server that hangs can keep a call for longer than the program runs.
Turns& libjack() {
    static auto* const turns = new Turns;
    return *turns;
}

using Client = std::unique_ptr<jack_client_t, int (*)(jack_client_t*)>;
using Ports = std::unique_ptr<const char*, void (*)(const char**)>;

/// How many streams are not closed yet although their server has shut down. To open a client then
/// would have libjack free those streams' clients behind their backs.
std::atomic<int> orphanCount{0};

/// What the server has: facts, or else what it lacks.
struct Sight {
    std::optional<OutputFacts> facts;
    std::string absence;
};

/// The client's part of "client:port".
std::string clientOf(const std::string& port) {
    return port.substr(0, port.find(':'));
}

Sight factsOf(jack_client_t* client) {
    const Ports ports(jack_get_ports(client, nullptr, JACK_DEFAULT_AUDIO_TYPE,
                                     JackPortIsInput | JackPortIsPhysical),
                      [](const char** list) { jack_free(list); });
    if (!ports) {
        return {std::nullopt, "the JACK server has no playback port"};
    }
    const std::string device = clientOf(*ports);
    std::uint32_t count = 0;
    for (const char** port = ports.get(); *port != nullptr; ++port) {
        count += clientOf(*port) == device ? 1 : 0;
    }
    OutputFacts facts;
    facts.format.sampleRate = jack_get_sample_rate(client);
    facts.format.channelCount = std::min(count, 2U);
    facts.frameCount = jack_get_buffer_size(client);
    facts.deviceName = device;
    return {facts, ""};
}

/// Tells what it sees before it leaves the server, which takes a third of the whole time.
void lookAtServer(std::promise<Sight>& sight) {
    if (orphanCount != 0) {
        sight.set_value({std::nullopt, "the JACK server has just shut down"});
        return;
    }
    const Client client(jack_client_open("Orvalo look", JackNoStartServer, nullptr),
                        jack_client_close);
    sight.set_value(client ? factsOf(client.get())
                           : Sight{std::nullopt, "no JACK server is running"});
}

/// RtAudio's JACK stream, listening to the server itself. RtAudio answers the server's shutdown by
/// closing the stream on a thread that nobody can wait for, beside whatever its owner is doing,
/// and by a line on standard error; and it does not see a change of the sample rate at all.
class ListeningJackApi : public RtApiJack {
  public:
    ListeningJackApi() { takeLibraryMessages(); }
    ~ListeningJackApi() override {
        if (stream_.state != STREAM_CLOSED) {
            closeStream();
        }
        orphanCount -= isOrphan_ ? 1 : 0;
    }
    ListeningJackApi(const ListeningJackApi&) = delete;
    ListeningJackApi& operator=(const ListeningJackApi&) = delete;

    /// Between the opening and the start of the stream: libjack takes callbacks only then. gate
    /// must live as long as the stream is open.
    void listen(RenderGate& gate) {
        gate_ = &gate;
        // The client is the first member of what RtAudio 5 keeps for a JACK stream.
        auto* client = *static_cast<jack_client_t**>(stream_.apiHandle);
        jack_on_shutdown(client, serverShutDown, this);
        jack_set_buffer_size_callback(client, bufferSizeChanged, this);
        jack_set_sample_rate_callback(client, sampleRateChanged, this);
    }

  private:
    static ListeningJackApi& of(void* self) { return *static_cast<ListeningJackApi*>(self); }

    static void serverShutDown(void* self) {
        orphanCount += of(self).isOrphan_.exchange(true) ? 0 : 1;
        of(self).gate_->end();
    }
    // Both are also told the values that hold already.
    static int bufferSizeChanged(jack_nframes_t frames, void* self) {
        if (frames != of(self).stream_.bufferSize) {
            of(self).gate_->end();
        }
        return 0;
    }
    static int sampleRateChanged(jack_nframes_t rate, void* self) {
        if (rate != of(self).stream_.sampleRate) {
            of(self).gate_->end();
        }
        return 0;
    }

    RenderGate* gate_ = nullptr;
    std::atomic<bool> isOrphan_{false};
};

/// RtAudio's number of a device, which is a JACK client to it.
unsigned int deviceIdOf(RtApiJack& api, const std::string& name) {
    const auto count = api.getDeviceCount();
    for (unsigned int id = 0; id < count; ++id) {
        if (api.getDeviceInfo(id).name == name) {
            return id;
        }
    }
    throw NSError("AudioOutputErrorDomain", 4, "the JACK server has lost its playback ports");
}

}  // namespace

/// A look under way, which a server that hangs can leave unfinished.
struct JackDevice::Look {
    std::shared_future<Sight> sight;
    std::future<void> end;
};

JackDevice::JackDevice() = default;

JackDevice::~JackDevice() {
    // A program that ends meanwhile would take from libjack what it needs to leave the server.
    if (look_) {
        look_->end.wait_for(kServerPatience);
    }
}

std::optional<OutputFacts> JackDevice::look() {
    takeLibraryMessages();
    std::chrono::milliseconds patience{0};
    // What an old look has found in the end is out of date.
    if (!look_ || look_->sight.wait_for(patience) == std::future_status::ready) {
        const auto sight = std::make_shared<std::promise<Sight>>();
        auto end = libjack().begin([sight] { lookAtServer(*sight); });
        look_ = std::make_unique<Look>(Look{sight->get_future(), std::move(end)});
        patience = kServerPatience;
    }
    if (look_->sight.wait_for(patience) != std::future_status::ready) {
        absence_ = "the JACK server does not answer";
        return std::nullopt;
    }
    absence_ = look_->sight.get().absence;
    return look_->sight.get().facts;
}

std::unique_ptr<OutputStream> JackDevice::open(const OutputFacts& facts,
                                               std::shared_ptr<RenderGate> gate) {
    auto api = std::make_shared<ListeningJackApi>();
    RtAudioStream::Options options;
    options.deviceId = [api, name = facts.deviceName] { return deviceIdOf(*api, name); };
    options.ownsRenderThread = false;
    options.opened = [api](RenderGate& opened) { api->listen(opened); };
    return std::make_unique<RtAudioStream>(std::move(api), libjack(), options, facts,
                                           std::move(gate));
}

}  // namespace orvalo
