// Hosts the effect "urn:orvalo:hostile" with the targets that it attacks, as the argument says:
// "attack", "cache", "hoard", "children", "bomb", "leak" or "sockets". Writes on standard output
// what the effect has changed, then the process IDs of all processes that it has started, and waits
// for the end of standard input.

#include <fcntl.h>
#include <glib.h>
#include <linux/ioprio.h>
#include <pty.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>

#include "platform/foundation/NSError.h"
#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/platform/audio/bridge/host/PatientLimits.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

namespace fs = std::filesystem;

constexpr const char* kPluginUI =
    "@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .\n"
    "<urn:orvalo:hostile> ui:ui <urn:orvalo:hostile:ui> .\n"
    "<urn:orvalo:hostile:ui> a ui:X11UI ; ui:binary <hostile.so> .\n";

void write(const fs::path& path, const std::string& text, mode_t mode) {
    fs::create_directories(path.parent_path());
    std::ofstream(path) << text;
    chmod(path.c_str(), mode);
}

std::string contents(const fs::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines of a list of System V objects that have no key, like the effect's. Those with a key
/// are of other programs, such as JACK's semaphore.
std::string withoutKey(const fs::path& list) {
    std::string result;
    std::ifstream file(list);
    for (std::string line; std::getline(file, line);) {
        int key = -1;
        if (std::istringstream(line) >> key && key == 0) {
            result += line + "\n";
        }
    }
    return result;
}

void listen(const std::string& name, bool isAbstract) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::memcpy(address.sun_path + (isAbstract ? 1 : 0), name.data(), name.size());
    const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + name.size() + 1);
    if (bind(socket, reinterpret_cast<const sockaddr*>(&address), length) != 0 ||
        ::listen(socket, 1) != 0) {
        std::perror("socket");
    }
}

/// Makes a new terminal this process's controlling one; returns its path.
std::string takeTerminal() {
    int controller = -1;
    int terminal = -1;
    setsid();
    if (openpty(&controller, &terminal, nullptr, nullptr, nullptr) != 0 ||
        ioctl(terminal, TIOCSCTTY, 0) != 0) {
        std::perror("terminal");
    }
    std::array<char, 64> name{};
    ttyname_r(terminal, name.data(), name.size());
    return name.data();
}

/// What the effect attacks.
class Victim {
  public:
    explicit Victim(const std::string& mode) {
        const auto home = folder_.path() / "home";
        fs::create_directories(home / "tmp");
        // NOLINTBEGIN(concurrency-mt-unsafe): the process has one thread.
        setenv("HOME", home.c_str(), 1);
        setenv("TMPDIR", (home / "tmp").c_str(), 1);
        setenv("XDG_CACHE_HOME", (home / "cache").c_str(), 1);
        // NOLINTEND(concurrency-mt-unsafe)
        write(document_, "mine", 0644);
        write(home / ".ssh/id", "secret", 0600);
        // Its folder keeps it from other users.
        write(home / ".ssh/hosts", "secret", 0644);
        chmod((home / ".ssh").c_str(), 0700);
        write(home / "sources/resource", "resource", 0644);
        write(home / ".lv2/preset", "preset", 0644);
        const auto bundle = this->bundle() / "hostile.lv2";
        fs::create_directories(bundle);
        fs::copy(ORVALO_HOSTILE "/manifest.ttl", bundle);
        if (mode == "cache" || mode == "hoard") {
            std::ofstream(bundle / "manifest.ttl", std::ios::app) << kPluginUI;
            write(home / "cache/orvalo/effects/other/shader", "shader", 0644);
        }
        fs::copy(ORVALO_HOSTILE "/hostile.so", bundle);
        fs::create_symlink("../../home/.ssh", bundle / "keys");
        fs::create_symlink("../../home/.ssh/id", bundle / "key");
        fs::create_symlink("../../home/.ssh/hosts", bundle / "hosts");
        fs::create_symlink(home / "sources/resource", bundle / "resource");
        write(home / "sources/other/resource", "resource", 0644);
        fs::create_symlink(home / "sources/other", home / ".lv2/other");
        fs::create_symlink(home / ".lv2/other/resource", bundle / "indirect");
        fs::create_directories(home / "run");
        listen(home / "run/bus", false);
        const auto name = "orvalo-hostile-" + std::to_string(getpid());
        listen(name, true);
        // The test removes it, as it may kill this process.
        write("/dev/shm/" + name, "shared", 0600);
        std::ofstream(bundle / "targets")
            << mode << (mode == "leak" ? " 300\n" : " 1\n") << "host " << getpid() << "\nhome "
            << home.string() << "\ndocument " << document_.string() << "\nsocket "
            << (home / "run/bus").string() << "\nabstract " << name << "\nterminal "
            << takeTerminal() << "\nshared /dev/shm/" << name << "\n";
    }

    fs::path bundle() const { return folder_.path() / "bundles"; }

    /// All that the effect tries to change, as text.
    std::string state() const {
        std::ostringstream text;
        rlimit limits{};
        getrlimit(RLIMIT_NOFILE, &limits);
        cpu_set_t processors;
        sched_getaffinity(0, sizeof(processors), &processors);
        struct stat status {};
        stat(document_.c_str(), &status);
        text << "descriptors " << limits.rlim_cur << ", processors " << CPU_COUNT(&processors)
             << ", policy " << sched_getscheduler(0) << ", priority "
             << getpriority(PRIO_PROCESS, 0) << ", disk "
             << syscall(SYS_ioprio_get, IOPRIO_WHO_PROCESS, 0) << ", document "
             << contents(document_) << " " << status.st_mode << " " << status.st_uid << " "
             << status.st_mtim.tv_sec << "." << status.st_mtim.tv_nsec << ", queues "
             << withoutKey("/proc/sysvipc/msg") << withoutKey("/proc/sysvipc/sem") << ", bundle "
             << std::distance(fs::directory_iterator(bundle() / "hostile.lv2"),
                              fs::directory_iterator())
             << ", home "
             << std::distance(fs::directory_iterator(folder_.path() / "home"),
                              fs::directory_iterator());
        return text.str();
    }
    bool hasTemporaryFiles() const { return !fs::is_empty(folder_.path() / "home/tmp"); }

  private:
    TemporaryFolder folder_;
    const fs::path document_ = folder_.path() / "home/document";
};

}  // namespace

int main(int argc, char** argv) {
    g_log_writer_default_set_use_stderr(TRUE);
    const std::string mode = argc == 2 ? argv[1] : "";
    const Victim victim(mode);
    const auto before = victim.state();
    LV2World world({{victim.bundle()}, victim.bundle() / "none"});
    try {
        auto limits = patientLimits();
        limits.logLines = 1000;
        // What the children of a bomb share counts for each.
        limits.memory = std::uint64_t{mode == "bomb" ? 64000U : 250U} << 20U;
        if (mode == "hoard") {
            limits.cache = std::uint64_t{16} << 20U;
        }
        const auto make = [&] { return makeBridged(world, "urn:orvalo:hostile", limits); };
        if (mode == "cache" || mode == "hoard") {
            // Effects have a cache only in programs that show UIs.
            LV2AudioUnit::setPluginUIProvider([](const auto& /*unit*/) { return nullptr; });
        }
        if (mode == "cache") {
            make();
        }
        auto unit = make();
        std::ostringstream line;
        line << "processes";
        for (const auto process : descendants()) {
            line << " " << process;
        }
        std::puts(line.str().c_str());
        std::fflush(stdout);
        while (std::getchar() != EOF) {
        }
        unit = nullptr;
    } catch (const NSError& error) {
        std::puts(error.localizedDescription().c_str());
    }
    const auto after = victim.state();
    std::puts(after == before ? "unharmed" : ("before: " + before + "\nafter: " + after).c_str());
    std::puts(victim.hasTemporaryFiles() ? "left files" : "left no files");
    std::puts(descendants().empty() ? "left no processes" : "left processes");
    return EXIT_SUCCESS;
}
