#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// What the process of an effect writes, line by line into GLib's log, with the effect's URI in
/// front: as text that can do no harm, and only so many lines a second. One thread.
class ServiceLog {
  public:
    using Clock = std::chrono::steady_clock;

    /// pipe: read without waiting.
    ServiceLog(FileDescriptor pipe, std::string uri, unsigned linesPerSecond)
        : pipe_(std::move(pipe)), uri_(std::move(uri)), linesPerSecond_(linesPerSecond) {}

    /// For poll(); below 0 once the pipe has been closed at the other end.
    int descriptor() const { return pipe_.get(); }
    /// Takes what there is, at most some KiB.
    void read(Clock::time_point now);
    /// Takes all that is left, and the line that was not ended; at most a MiB.
    void finish(Clock::time_point now);

    /// The last line that was not empty, whether the log has it or not.
    const std::string& lastMessage() const { return lastMessage_; }

  private:
    bool readSome(Clock::time_point now);
    void endLine(Clock::time_point now);
    void tellLeftOut();

    FileDescriptor pipe_;
    const std::string uri_;
    const unsigned linesPerSecond_;
    std::string line_;  // Its beginning; what is too long is left out.
    std::string lastMessage_;
    Clock::time_point secondBegan_;
    unsigned linesThisSecond_ = 0;
    unsigned leftOut_ = 0;
};

}  // namespace orvalo
