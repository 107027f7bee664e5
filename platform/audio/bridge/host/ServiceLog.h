#pragma once

#include <chrono>
#include <string>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// Copies a service's output into GLib's log: printable lines behind the effect's URI, a limited
/// number per second. One thread.
class ServiceLog {
  public:
    using Clock = std::chrono::steady_clock;

    /// pipe: non-blocking.
    ServiceLog(FileDescriptor pipe, std::string uri, unsigned linesPerSecond)
        : pipe_(std::move(pipe)), uri_(std::move(uri)), linesPerSecond_(linesPerSecond) {}

    /// For poll(); below 0 when the service has closed the pipe.
    int descriptor() const { return pipe_.get(); }
    /// Reads the available bytes, up to 32 KiB.
    void read(Clock::time_point now);
    /// Reads the rest, up to 1 MiB, and logs the last line also when it is incomplete.
    void finish(Clock::time_point now);

    /// The last line that was not empty, logged or not.
    const std::string& lastMessage() const { return lastMessage_; }

  private:
    bool readSome(Clock::time_point now);
    void endLine(Clock::time_point now);
    void logOmitted();

    FileDescriptor pipe_;
    const std::string uri_;
    const unsigned linesPerSecond_;
    std::string line_;  // The start of the current line, up to a limit.
    std::string lastMessage_;
    Clock::time_point secondBegan_;
    unsigned linesThisSecond_ = 0;
    unsigned omitted_ = 0;
};

}  // namespace orvalo
