#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// One process of the effect service, from its start until nothing is left of it. It leads a
/// process group of its own, has /dev/null as its standard input, one pipe as its standard output
/// and error, one end of a socket as descriptor 3, and none of this process's descriptors. One
/// thread, which must live as long: the process ends with the thread that started it.
class ServiceProcess {
  public:
    /// Starts program with this process's id as its argument. Throws NSError.
    explicit ServiceProcess(const std::filesystem::path& program);
    /// As end().
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    /// Given to the caller once: this side of the socket, and what reads the pipe.
    FileDescriptor takeSocket() { return std::move(socket_); }
    FileDescriptor takeOutput() { return std::move(output_); }

    pid_t id() const { return id_; }
    /// For poll(): readable once the process has ended.
    int descriptor() const { return process_.get(); }
    /// Whether it has ended by itself, or does so within the limit.
    bool endsWithin(std::chrono::milliseconds limit) const;
    /// Resident memory, in bytes; 0 when it cannot be told.
    std::uint64_t residentMemory() const;

    /// Ends the whole group, if it has not ended, and takes its end from the system, so that
    /// nothing is left. How it ended, as the rest of a sentence: "was killed by signal 11
    /// (Segmentation fault)", "ended with status 3".
    std::string end();

  private:
    pid_t id_ = -1;
    FileDescriptor process_;
    FileDescriptor socket_;
    FileDescriptor output_;
};

}  // namespace orvalo
