// An effect that tries forbidden operations at its instantiation and logs each outcome. The context
// name is a folder outside its places. Its state is the number of its run() calls.

#include <fcntl.h>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace {

struct Prober {
    LV2_URID_Map* map = nullptr;
    LV2_Log_Log* log = nullptr;
    std::array<float*, 2> ports{};
    std::atomic<std::int32_t> runs{0};

    LV2_URID number(const char* uri) const { return map->map(map->handle, uri); }
    /// Logs the outcome of a system call; -1 stands for errno.
    void say(const char* what, long result) const {
        const char* outcome = result == -1 ? strerrorname_np(errno) : "done";
        log->printf(log->handle, number(LV2_LOG__Note), "%s: %s\n", what, outcome);
    }
};

Prober& prober(LV2_Handle handle) {
    return *static_cast<Prober*>(handle);
}

long openFile(const std::string& path, int flags) {
    const int file = open(path.c_str(), flags | O_CLOEXEC, 0600);
    if (file >= 0) {
        close(file);
    }
    return file;
}

long runProgram(const char* program) {
    const pid_t child = fork();
    if (child == 0) {
        execl(program, program, nullptr);
        _exit(126);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : -1;
}

void probe(const Prober& self, const std::string& outside) {
    self.say("socket of IPv4", socket(AF_INET, SOCK_STREAM, 0));
    self.say("socket of IPv6", socket(AF_INET6, SOCK_DGRAM, 0));
    self.say("socket of packets", socket(AF_PACKET, SOCK_RAW, 0));
    self.say("socket of the machine", socket(AF_UNIX, SOCK_STREAM, 0));
    self.say("ring of requests", syscall(SYS_io_uring_setup, 1, nullptr));
    self.say("read outside", openFile(outside + "/secret", O_RDONLY));
    self.say("write outside", openFile(outside + "/made", O_WRONLY | O_CREAT));
    self.say("list outside", openFile(outside, O_RDONLY | O_DIRECTORY));
    self.say("write beside its library", openFile(PROBER_BUNDLE "/made", O_WRONLY | O_CREAT));
    self.say("read its bundle", openFile(PROBER_BUNDLE "/manifest.ttl", O_RDONLY));
    self.say("write a temporary file",
             openFile(std::string(getenv("TMPDIR")) + "/made", O_RDWR | O_CREAT));
    const std::string cache = getenv("MESA_SHADER_CACHE_DIR");
    self.say("read a shader of an earlier start", openFile(cache + "/shader", O_RDONLY));
    self.say("keep a shader", openFile(cache + "/shader", O_RDWR | O_CREAT));
    self.say("read another effect's shader", openFile(cache + "/../other/shader", O_RDONLY));
    self.say("write nowhere", openFile("/dev/null", O_WRONLY | O_TRUNC));
    self.say("read the system's files", openFile("/etc/passwd", O_RDONLY));
    self.say("run a program", runProgram("/bin/true"));
    self.say("signal the host", kill(getppid(), 0));
    // With invalid arguments the kernel would report those instead of EPERM.
    constexpr long kNoText = 1;
    self.say("mount", syscall(SYS_mount, "none", outside.c_str(), kNoText, 0, nullptr));
    constexpr long kNoFlag = 1;
    self.say("read the host's memory",
             syscall(SYS_process_vm_readv, getppid(), nullptr, 0, nullptr, 0, kNoFlag));
    self.say("leave its group", setpgid(0, getpgid(getppid())));
    self.say("leave its session", setsid());
    self.say("outlive the host", prctl(PR_SET_PDEATHSIG, 0));
    self.say("name a thread", prctl(PR_SET_NAME, "prober"));
    self.say("keep a secret from the user", syscall(SYS_keyctl, 0, -3, 0, 0, 0));
}

LV2_Handle instantiate(const LV2_Descriptor* /*descriptor*/, double /*rate*/,
                       const char* /*bundle*/, const LV2_Feature* const* features) {
    auto* self = new Prober;
    const LV2_Options_Option* options = nullptr;
    for (; *features != nullptr; ++features) {
        const std::string_view uri((*features)->URI);
        if (uri == LV2_URID__map) {
            self->map = static_cast<LV2_URID_Map*>((*features)->data);
        } else if (uri == LV2_LOG__log) {
            self->log = static_cast<LV2_Log_Log*>((*features)->data);
        } else if (uri == LV2_OPTIONS__options) {
            options = static_cast<const LV2_Options_Option*>((*features)->data);
        }
    }
    for (; options->key != 0; ++options) {
        if (options->key == self->number("urn:tessaly:audio-component#contextName") &&
            options->size > 1) {
            probe(*self, static_cast<const char*>(options->value));
        }
    }
    return self;
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* location) {
    prober(handle).ports[port] = static_cast<float*>(location);
}

void run(LV2_Handle handle, std::uint32_t frames) {
    auto& self = prober(handle);
    ++self.runs;
    std::memcpy(self.ports[1], self.ports[0], frames * sizeof(float));
}

void cleanup(LV2_Handle handle) {
    delete &prober(handle);
}

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle place,
                      std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/) {
    auto& self = prober(handle);
    const std::int32_t runs = self.runs;
    return store(place, self.number("urn:orvalo:service:prober#runs"), &runs, sizeof(runs),
                 self.number(LV2_ATOM__Int), LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve,
                         LV2_State_Handle place, std::uint32_t /*flags*/,
                         const LV2_Feature* const* /*features*/) {
    auto& self = prober(handle);
    std::size_t size = 0;
    std::uint32_t type = 0;
    std::uint32_t flags = 0;
    const void* value =
        retrieve(place, self.number("urn:orvalo:service:prober#runs"), &size, &type, &flags);
    std::int32_t runs = 0;
    if (value != nullptr && size == sizeof(runs) && type == self.number(LV2_ATOM__Int)) {
        std::memcpy(&runs, value, sizeof(runs));
        self.runs = runs;
    }
    return LV2_STATE_SUCCESS;
}

const void* extensionData(const char* uri) {
    static const LV2_State_Interface state{save, restore};
    return std::string_view(uri) == LV2_STATE__interface ? &state : nullptr;
}

}  // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    static const LV2_Descriptor descriptor{"urn:orvalo:service:prober",
                                           instantiate,
                                           connectPort,
                                           nullptr,
                                           run,
                                           nullptr,
                                           cleanup,
                                           extensionData};
    return index == 0 ? &descriptor : nullptr;
}
