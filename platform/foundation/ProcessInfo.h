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

  private:
    ProcessInfo();
    std::string processName_;
    std::int32_t processIdentifier_;
};

}  // namespace orvalo
