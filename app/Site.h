#pragma once

#include <string>

namespace orvalo {

/// The address of the maker's web site: scheme and host, set when the build is configured.
extern const std::string makersSite;

/// False while the address is the default, a reserved name that no site has.
extern const bool isSiteConfigured;

}  // namespace orvalo
