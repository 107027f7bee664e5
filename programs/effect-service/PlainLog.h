#pragma once

namespace orvalo {

/// Has GLib's log go to standard error as the lines alone, which the host puts into its own log.
void usePlainLog();

}  // namespace orvalo
