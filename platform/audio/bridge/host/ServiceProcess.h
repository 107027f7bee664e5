#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>

#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// A process of effect-service. It leads a process group; its standard input is /dev/null, its
/// standard output and error are one pipe, its descriptor 3 is a socket; it inherits no other
/// descriptors and only the environment variables that effects need. One thread, which must outlive
/// the object: the kernel kills the process when the thread that started it ends.
class ServiceProcess {
  public:
    /// Starts program with the host's process ID as its argument. Throws NSError. No other thread
    /// may change the environment during the call.
    explicit ServiceProcess(const std::filesystem::path& program);
    /// Calls end().
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    /// The host's ends of the socket and of the pipe, which does not block. Once each.
    FileDescriptor takeSocket() { return std::move(socket_); }
    FileDescriptor takeOutput() { return std::move(output_); }

    pid_t id() const { return id_; }
    /// For poll(): readable when the process has ended.
    int descriptor() const { return process_.get(); }
    /// Waits up to the limit; whether the process has ended by itself.
    bool endsWithin(std::chrono::milliseconds limit) const;
    /// Resident memory, in bytes; 0 when it cannot be read.
    std::uint64_t residentMemory() const;

    /// Kills the process group and reaps the process. Returns how the process ended, as a clause:
    /// "was killed by signal 11 (Segmentation fault)", "ended with status 3".
    std::string end();

  private:
    pid_t id_ = -1;
    FileDescriptor process_;
    FileDescriptor socket_;
    FileDescriptor output_;
};

}  // namespace orvalo
