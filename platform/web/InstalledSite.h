#pragma once

#include <optional>
#include <string>

#include "platform/foundation/URL.h"

namespace orvalo {

/// The pages of a web site as files of a folder. A value.
class InstalledSite {
  public:
    /// site: scheme and host. folder: has "<path>/index.html" for the address "<site><path>/".
    InstalledSite(std::string site, const URL& folder);

    /// The page that belongs to an address, or null where the folder has none. Logs a page that
    /// cannot be read. Main thread.
    std::optional<std::string> page(const std::string& address) const;

  private:
    std::string site_;
    std::string folder_;
};

/// The address without its fragment.
std::string withoutFragment(const std::string& address);

}  // namespace orvalo
