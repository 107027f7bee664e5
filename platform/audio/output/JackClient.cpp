#include "platform/audio/output/JackClient.h"

#include <glib.h>
#include <pthread.h>

#include <algorithm>
#include <atomic>

namespace orvalo {

namespace {

std::atomic<int> orphanCount{0};

void logToGLib(const char* message) {
    g_debug("JACK: %s", message);
}

// jack_client_close() cancels libjack's threads at any instruction. The thread that receives
// notifications calls strerror() when the server has died; cancelled there, it would keep a lock of
// the C library for ever. So it is cancelled only where it waits, in read(). The render thread
// waits in a futex, where only cancelling at any instruction ends it.
void initialiseThread(void* client) {
    const auto render = jack_client_thread_id(static_cast<jack_client_t*>(client));
    if (pthread_equal(pthread_self(), render) == 0) {
        pthread_setcanceltype(PTHREAD_CANCEL_DEFERRED, nullptr);
    }
}

/// The names of the audio inputs with these flags whose names match the regular expression.
std::vector<std::string> inputPorts(jack_client_t* client, const char* pattern,
                                    unsigned long flags) {
    const std::unique_ptr<const char*, void (*)(const char**)> list(
        jack_get_ports(client, pattern, JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput | flags),
        [](const char** ports) { jack_free(ports); });
    std::vector<std::string> names;
    for (const char** port = list.get(); port != nullptr && *port != nullptr; ++port) {
        names.emplace_back(*port);
    }
    return names;
}

/// The names of all playback ports, as "client:port".
std::vector<std::string> playbackPorts(jack_client_t* client) {
    auto ports = inputPorts(client, nullptr, JackPortIsPhysical);
    if (ports.empty()) {
        // PipeWire has virtual sinks whose ports have no flag that other applications' inputs lack;
        // only the name distinguishes a sink's ports.
        ports = inputPorts(client, ":playback_", 0);
    }
    return ports;
}

}  // namespace

LibraryCalls& libjack() {
    // Never destroyed: a server that hangs can keep a call for longer than the program runs.
    static auto* const calls = new LibraryCalls;
    return *calls;
}

JackClient openJackClient(const char* name) {
    jack_set_error_function(logToGLib);
    jack_set_info_function(logToGLib);
    if (orphanCount != 0) {
        throw outputError("the JACK server has just shut down");
    }
    jack_status_t status{};
    JackClient client(jack_client_open(name, JackNoStartServer, &status), jack_client_close);
    if (!client) {
        if ((status & JackServerError) != 0) {
            throw outputError("the JACK server went away", kDeviceWentAway);
        }
        throw outputError("no JACK server is running");
    }
    jack_set_thread_init_callback(client.get(), initialiseThread, client.get());
    return client;
}

JackClient openIdleJackClient() {
    auto client = openJackClient("Orvalo look");
    if (jack_activate(client.get()) != 0) {
        throw outputError("the JACK server went away", kDeviceWentAway);
    }
    return client;
}

OutputFacts jackFacts(jack_client_t* client) {
    const auto ports = playbackPorts(client);
    if (ports.empty()) {
        throw outputError("the JACK server has no playback port");
    }
    OutputFacts facts;
    facts.deviceName = ports.front().substr(0, ports.front().find(':'));
    facts.format.sampleRate = jack_get_sample_rate(client);
    facts.format.channelCount = static_cast<std::uint32_t>(
        std::min<std::size_t>(jackPlaybackPorts(client, facts.deviceName).size(), 2));
    facts.frameCount = jack_get_buffer_size(client);
    return facts;
}

std::vector<std::string> jackPlaybackPorts(jack_client_t* client, const std::string& device) {
    auto ports = playbackPorts(client);
    std::erase_if(ports, [&](const auto& port) { return !port.starts_with(device + ":"); });
    return ports;
}

void countOrphanedJackClients(int change) {
    orphanCount += change;
}

}  // namespace orvalo
