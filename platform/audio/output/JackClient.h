#pragma once

#include <jack/jack.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/audio/output/LibraryCalls.h"
#include "platform/audio/output/OutputDevice.h"

namespace orvalo {

using JackClient = std::unique_ptr<jack_client_t, int (*)(jack_client_t*)>;

/// Serialises all calls that open or close JACK clients.
LibraryCalls& libjack();

/// Opens a client of the server that already runs; sends libjack's messages to GLib's log, as debug
/// messages. Throws NSError when no server runs, or while a client of a dead server is still open:
/// libjack would free that client.
JackClient openJackClient(const char* name);

/// Opens a client that only looks at the server. It is active, because libjack calls the function
/// that makes a client safe to close when the client is activated. Throws as openJackClient().
JackClient openIdleJackClient();

/// The server's format, and its first device with playback ports: at most two of its ports count as
/// channels. A virtual sink counts when no physical device has any. Throws NSError when there is
/// none.
OutputFacts jackFacts(jack_client_t* client);

/// The names of the playback ports of a device, which is a JACK client.
std::vector<std::string> jackPlaybackPorts(jack_client_t* client, const std::string& device);

/// Counts the clients that are still open although their server has shut down, for
/// openJackClient(). Any thread.
void countOrphanedJackClients(int change);

}  // namespace orvalo
