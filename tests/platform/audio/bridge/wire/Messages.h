#pragma once

#include <vector>

#include "platform/audio/bridge/wire/BridgeMessages.h"

namespace orvalo::testing {

/// One message of each type, with no field at its default.
std::vector<bridge::HostMessage> hostMessages();
std::vector<bridge::ServiceMessage> serviceMessages();

/// A message without its head.
std::vector<std::byte> bodyOf(const std::vector<std::byte>& message);

}  // namespace orvalo::testing
