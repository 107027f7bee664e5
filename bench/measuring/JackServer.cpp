#include "bench/measuring/JackServer.h"

#include <jack/jack.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace orvalo::bench {

namespace {

// Always the same: a killed server keeps its place in the machine's list of eight JACK servers
// until the next of its name.
constexpr const char* kName = "orvalo-bench";
constexpr int kMicrosecondsBetweenLooks = 20'000;
constexpr int kLooks = 500;

bool answers() {
    auto* client = jack_client_open("orvalo-bench-look", JackNoStartServer, nullptr);
    return client != nullptr && jack_client_close(client) == 0;
}

}  // namespace

JackServer::JackServer() {
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread runs yet.
    setenv("JACK_DEFAULT_SERVER", kName, 1);
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    // NOLINTEND(concurrency-mt-unsafe)
    // libjack logs an error for each attempt until the server answers.
    jack_set_error_function([](const char*) {});
    jack_set_info_function([](const char*) {});
    process_ = std::make_unique<Child>(
        Command{"jackd", "--name", kName, "-d", "dummy", "--rate", "48000", "--period", "64"});
    for (int look = 0; !answers(); ++look) {
        if (look == kLooks) {
            throw std::runtime_error("jackd does not answer");
        }
        usleep(kMicrosecondsBetweenLooks);
    }
}

}  // namespace orvalo::bench
