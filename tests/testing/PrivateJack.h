#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/testing/ServerProcess.h"

namespace orvalo::testing {

/// A JACK server for tests, with the dummy driver and without real-time priority. While this object
/// lives, the server is the default one of this process and its children.
///
/// A server that is killed, or crashes while it ends, keeps one of the eight places in the
/// machine's list of JACK servers until the next server of its name. So all tests use one name, one
/// at a time.
class PrivateJack {
  public:
    /// Waits until no other program tests with JACK.
    PrivateJack();
    ~PrivateJack();
    PrivateJack(const PrivateJack&) = delete;
    PrivateJack& operator=(const PrivateJack&) = delete;

    const std::string& name() const { return name_; }
    /// Starts the server, which need not answer yet. The options are those of jackd.
    std::unique_ptr<ServerProcess> start(const std::vector<std::string>& driverOptions = {},
                                         const std::vector<std::string>& serverOptions = {}) const;

  private:
    const std::string name_ = "orvalo-test";
    int lock_ = -1;
};

}  // namespace orvalo::testing
