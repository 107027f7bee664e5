#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "platform/audio/bridge/host/EffectPlaces.h"
#include "platform/foundation/FileDescriptor.h"

namespace orvalo {

/// A process of effect-service, with all that it starts, in namespaces of its own. Its standard
/// input is /dev/null, its standard output and error are one pipe, its descriptor 3 is a socket; it
/// inherits no other descriptors and only the environment variables that effects need. One thread,
/// which must outlive the object: the kernel kills the processes when the thread that started them
/// ends.
///
/// bubblewrap makes the namespaces. Its first process has its ID in the host's namespace, its
/// second is process 1 of the new one and ends all the others when it ends; the service is its
/// child. Where bubblewrap is missing, or failedToConfine() has found that it does not work, the
/// service is the host's child, and one warning says what does not hold.
class ServiceProcess {
  public:
    /// Starts program. Throws NSError. No other thread may change the environment during the call.
    explicit ServiceProcess(const std::filesystem::path& program, const EffectPlaces& places = {});
    /// Calls end().
    ~ServiceProcess();
    ServiceProcess(const ServiceProcess&) = delete;
    ServiceProcess& operator=(const ServiceProcess&) = delete;

    /// The host's ends of the socket and of the pipe, which does not block. Once each.
    FileDescriptor takeSocket() { return std::move(socket_); }
    FileDescriptor takeOutput() { return std::move(output_); }

    /// The host's child: bubblewrap, or else the service.
    pid_t id() const { return id_; }
    /// For poll(): readable when the process has ended.
    int descriptor() const { return process_.get(); }
    /// Waits up to the limit; whether the process has ended by itself.
    bool endsWithin(std::chrono::milliseconds limit) const;

    /// What a service uses with its children.
    struct Use {
        std::uint64_t memory = 0;  ///< Resident, in bytes.
        unsigned threads = 0;
    };
    /// Zeros when it cannot be read.
    Use use() const;

    /// To be called when the service has answered: it tells that bubblewrap has started it.
    void noteAnswer() const;

    /// Kills the service with its children and reaps the process. Returns how the service ended, as
    /// a clause: "was killed by signal 11 (Segmentation fault)", "ended with status 3".
    std::string end();

    /// After end(): whether bubblewrap ended without starting the program because it does not work
    /// on this machine. Then it has warned, and later processes are not confined. Never after
    /// bubblewrap has started any program.
    bool failedToConfine() const;

  private:
    ServiceProcess() = default;
    void start(std::vector<std::string> command, bool isConfined);

    pid_t id_ = -1;
    FileDescriptor process_;
    pid_t first_ = -1;  // Process 1 of the namespace, in the host's; below 0 without one.
    FileDescriptor firstProcess_;  // Empty also when it had ended before it was opened.
    FileDescriptor status_;        // Where bubblewrap reports; empty without it.
    FileDescriptor socket_;
    FileDescriptor output_;
};

}  // namespace orvalo
