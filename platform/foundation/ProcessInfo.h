#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// What the system knows of this process. Any thread.
class ProcessInfo {
  public:
    static const ProcessInfo& processInfo();

    /// The executable's file name.
    const std::string& processName() const { return processName_; }
    std::int32_t processIdentifier() const { return processIdentifier_; }
    /// A text that no other call gives, in this process, a fork of it, or anywhere else: a random
    /// UUID (RFC 4122, version 4) in capitals.
    std::string globallyUniqueString() const;

  private:
    ProcessInfo();
    std::string processName_;
    std::int32_t processIdentifier_;
};

}  // namespace orvalo
