#include "tests/persistence/PersistenceFixture.h"

#include <glib.h>

#include <optional>

#include "tests/testing/Staged.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

constexpr auto kVariable = "ORVALO_PERSISTENCE_TEST_HOME";

/// The configuration folder, set before its first use and removed when the program ends. The
/// process of a death test inherits its parent's.
const class Home {
  public:
    Home() {
        const auto* inherited = g_getenv(kVariable);
        if (inherited == nullptr) {
            folder_.emplace();
        }
        path_ = inherited == nullptr ? folder_->path().string() : inherited;
        g_setenv(kVariable, path_.c_str(), TRUE);
        g_setenv("XDG_CONFIG_HOME", path_.c_str(), TRUE);
    }
    const std::string& path() const { return path_; }

  private:
    std::optional<TemporaryFolder> folder_;
    std::string path_;
} theHome;

void clear(UserDefaults& store) {
    for (const auto& [key, value] : store.dictionaryRepresentation()) {
        store.removeObject(key);
    }
}

}  // namespace

const std::string& home() {
    return theHome.path();
}

PersistenceFixture::PersistenceFixture() {
    clear(*group);
    clear(*standard);
}

PeerRun::PeerRun(const std::vector<std::string>& words, const std::string& home) {
    std::vector<std::string> command{staged("persistence_peer")};
    command.insert(command.end(), words.begin(), words.end());
    Program::Environment environment;
    if (!home.empty()) {
        environment["XDG_CONFIG_HOME"] = home;
    }
    Program program(command, environment);
    output = program.readAll();
    status = program.wait();
    error = program.standardError();
}

}  // namespace orvalo::testing
