#include "tests/testing/SessionBus.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "tests/testing/ServerProcess.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

namespace {

// Not GTestDBus: it forks this process to watch it, and the fork ends after it, through exit().
// There it destroys the test's servers once more, which by then may be those of other tests.
class SessionBus {
  public:
    SessionBus() {
        EXPECT_TRUE(pollUntil([this] { return isListening(socket_); }));
        g_setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), TRUE);
        // The programs of the test use nothing of the user's session.
        g_unsetenv("XDG_RUNTIME_DIR");
    }

  private:
    const TemporaryFolder folder_;
    const std::filesystem::path socket_ = folder_.path() / "bus";
    const std::string address_ = "unix:path=" + socket_.string();
    // The services that the bus starts get this folder for their sockets. The one of assistive
    // technology has the same name for every bus.
    const ServerProcess daemon_{{"env", "XDG_RUNTIME_DIR=" + folder_.path().string(), "dbus-daemon",
                                 "--session", "--nofork", "--nopidfile", "--address=" + address_}};
};

}  // namespace

void startSessionBus() {
    static const SessionBus bus;
}

}  // namespace orvalo::testing
