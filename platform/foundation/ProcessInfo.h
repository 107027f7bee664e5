#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// Information about this process. Any thread.
class ProcessInfo {
  public:
    static const ProcessInfo& processInfo();

    /// The executable's file name.
    const std::string& processName() const { return processName_; }
    std::int32_t processIdentifier() const { return processIdentifier_; }
    /// A new random UUID (RFC 4122, version 4) in capitals; also unique in forks of this process.
    std::string globallyUniqueString() const;

  private:
    ProcessInfo();
    std::string processName_;
    std::int32_t processIdentifier_;
};

}  // namespace orvalo
