#include "bench/window/XrunCount.h"

#include <memory>
#include <stdexcept>

namespace orvalo::bench {

XrunCount::XrunCount()
    : client_(jack_client_open("orvalo-bench-xruns", JackNoStartServer, nullptr)) {
    if (client_ == nullptr) {
        throw std::runtime_error("there is no JACK server");
    }
    jack_set_xrun_callback(
        client_,
        [](void* self) {
            ++static_cast<XrunCount*>(self)->value_;
            return 0;
        },
        this);
    jack_activate(client_);
}

XrunCount::~XrunCount() {
    jack_client_close(client_);
}

bool XrunCount::isPlaybackConnected() const {
    const std::unique_ptr<const char*, void (*)(void*)> ports(
        jack_get_ports(client_, nullptr, JACK_DEFAULT_AUDIO_TYPE,
                       JackPortIsInput | JackPortIsPhysical),
        jack_free);
    if (ports == nullptr) {
        return false;
    }
    const std::unique_ptr<const char*, void (*)(void*)> connected(
        jack_port_get_all_connections(client_, jack_port_by_name(client_, *ports)), jack_free);
    return connected != nullptr;
}

}  // namespace orvalo::bench
