#include "tests/testing/PrivateJack.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace orvalo::testing {

PrivateJack::PrivateJack() {
    // Each user has servers of this name.
    const auto file = std::filesystem::temp_directory_path() /
                      ("orvalo-test-jack-" + std::to_string(getuid()) + ".lock");
    lock_ = open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    int result = 0;
    do {
        result = flock(lock_, LOCK_EX);
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        throw std::system_error(errno, std::generic_category(), file.string());
    }
    // NOLINTBEGIN(concurrency-mt-unsafe): no other thread of the test reads the environment.
    setenv("JACK_DEFAULT_SERVER", name_.c_str(), 1);
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    // A client that comes too early would start another server.
    setenv("JACK_NO_START_SERVER", "1", 1);
    // NOLINTEND(concurrency-mt-unsafe)
}

PrivateJack::~PrivateJack() {
    close(lock_);
}

std::unique_ptr<ServerProcess> PrivateJack::start(
    const std::vector<std::string>& driverOptions,
    const std::vector<std::string>& serverOptions) const {
    std::vector<std::string> command{"jackd", "--no-realtime", "--name", name_};
    command.insert(command.end(), serverOptions.begin(), serverOptions.end());
    command.insert(command.end(), {"-d", "dummy"});
    command.insert(command.end(), driverOptions.begin(), driverOptions.end());
    return std::make_unique<ServerProcess>(command);
}

}  // namespace orvalo::testing
