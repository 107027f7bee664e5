#pragma once

#include <vector>

#include "platform/audio/bridge/wire/BridgeMessages.h"

namespace orvalo::testing {

/// One message of each kind, with something in every field.
std::vector<bridge::HostMessage> hostMessages();
std::vector<bridge::ServiceMessage> serviceMessages();

/// The bytes behind a message's head.
std::vector<std::byte> bodyOf(const std::vector<std::byte>& message);

}  // namespace orvalo::testing
