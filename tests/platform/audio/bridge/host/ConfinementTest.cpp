#include <fcntl.h>
#include <glib.h>
#include <gmock/gmock.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "platform/foundation/FileDescriptor.h"
#include "platform/foundation/GLibPointer.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr uid_t kNobody = 65534;

/// fork(), such that no process of a new namespace has the child's number.
pid_t forkWithHighNumber() {
    constexpr pid_t kHigh = 2000;
    for (;;) {
        const auto child = fork();
        if (child < 0 || (child == 0 ? getpid() : child) >= kHigh) {
            return child;
        }
        if (child == 0) {
            _exit(0);
        }
        waitpid(child, nullptr, 0);
    }
}

/// A program that hosts a hostile effect, run by a user.
class HostileHost {
  public:
    HostileHost(uid_t user, const char* mode, const char* path = nullptr) {
        std::array<int, 2> output{};
        std::array<int, 2> input{};
        EXPECT_EQ(pipe2(output.data(), O_CLOEXEC), 0);
        EXPECT_EQ(pipe2(input.data(), O_CLOEXEC), 0);
        process_ = forkWithHighNumber();
        if (process_ == 0) {
            dup2(input[0], STDIN_FILENO);
            dup2(output[1], STDOUT_FILENO);
            dup2(output[1], STDERR_FILENO);
            if (user != geteuid() &&
                (setgroups(0, nullptr) != 0 || setresgid(user, user, user) != 0 ||
                 setresuid(user, user, user) != 0)) {
                _exit(126);
            }
            if (path != nullptr) {
                // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread.
                setenv("PATH", path, 1);
            }
            execl(ORVALO_HOSTILE_HOST, ORVALO_HOSTILE_HOST, mode, nullptr);
            _exit(127);
        }
        output_ = FileDescriptor(output[0]);
        input_ = FileDescriptor(input[1]);
        close(output[1]);
        close(input[0]);
        fcntl(output_.get(), F_SETFL, O_NONBLOCK);
    }
    ~HostileHost() {
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
        std::filesystem::remove("/dev/shm/orvalo-hostile-" + std::to_string(process_));
    }
    HostileHost(const HostileHost&) = delete;
    HostileHost& operator=(const HostileHost&) = delete;

    /// Waits for the text; whether it came.
    bool says(const std::string& wanted) {
        return pollUntil([&] { return text().find(wanted) != std::string::npos; });
    }
    /// What it and its effect have written so far.
    const std::string& text() {
        std::array<char, 4096> piece{};
        for (ssize_t count = 0; (count = read(output_.get(), piece.data(), piece.size())) > 0;) {
            text_.append(piece.data(), static_cast<std::size_t>(count));
        }
        return text_;
    }
    /// The processes that it has told.
    std::vector<pid_t> processes() {
        std::vector<pid_t> result;
        if (says("\nprocesses ")) {
            std::istringstream line(text_.substr(text_.find("\nprocesses ") + 11));
            for (pid_t process = 0; line.peek() != '\n' && line >> process;) {
                result.push_back(process);
            }
        }
        return result;
    }
    void end() { input_ = FileDescriptor(); }
    pid_t id() const { return process_; }

  private:
    pid_t process_ = -1;
    FileDescriptor output_;
    FileDescriptor input_;
    std::string text_;
};

/// The effect's attempts with their outcomes, which its host has logged.
std::map<std::string, std::string> outcomesIn(const std::string& text) {
    std::map<std::string, std::string> result;
    std::istringstream lines(text);
    constexpr std::string_view kMark = "<urn:orvalo:hostile>: ";
    for (std::string line; std::getline(lines, line);) {
        const auto mark = line.find(kMark);
        const auto end = line.find(": ", mark + kMark.size());
        if (mark != std::string::npos && end != std::string::npos) {
            const auto begin = mark + kMark.size();
            result[line.substr(begin, end - begin)] = line.substr(end + 2);
        }
    }
    return result;
}

/// The lines that contain the text.
std::vector<std::string> linesWith(const std::string& part, const std::string& text) {
    std::vector<std::string> result;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.find(part) != std::string::npos) {
            result.push_back(line);
        }
    }
    return result;
}

/// As root also as an ordinary user.
std::vector<uid_t> users() {
    return geteuid() == 0 ? std::vector<uid_t>{0, kNobody} : std::vector<uid_t>{geteuid()};
}

class Confinement : public ::testing::TestWithParam<uid_t> {};

INSTANTIATE_TEST_SUITE_P(Users, Confinement, ::testing::ValuesIn(users()),
                         [](const auto& user) { return "user" + std::to_string(user.param); });

TEST_P(Confinement, StopsEachAttack) {
    HostileHost host(GetParam(), "attack");
    ASSERT_TRUE(host.says("\nprocesses ")) << host.text();
    host.end();
    ASSERT_TRUE(host.says("left ")) << host.text();
    const std::map<std::string, std::string> expected{
        // Other processes.
        {"limit the host", "ESRCH"},
        {"bind the host to a processor", "ESRCH"},
        {"make the host idle", "ESRCH"},
        {"slow the host down", "ESRCH"},
        {"make the host's disk slow", "ESRCH"},
        {"signal the host", "ESRCH"},
        {"signal the host's group", "ESRCH"},
        {"trace the host", "EPERM"},
        {"read the host's memory", "EPERM"},
        {"open the host's memory", "ENOENT"},
        {"list the host's files", "ENOENT"},
        {"outlive the host", "EPERM"},
        {"outlive the host by high bits", "EPERM"},
        // Files.
        {"read a document", "ENOENT"},
        {"write a document", "ENOENT"},
        {"chmod a document", "ENOENT"},
        {"chown a document", "ENOENT"},
        {"date a document", "ENOENT"},
        {"mark a document", "ENOENT"},
        {"remove a document", "EROFS"},
        {"make a file at home", "EROFS"},
        {"write its bundle", "EROFS"},
        {"make a file in its bundle", "EROFS"},
        {"chmod its bundle", "EROFS"},
        {"date its bundle", "EROFS"},
        {"mark its bundle", "EROFS"},
        {"read a key through a linked folder", "ENOENT"},
        {"read a linked key", "ENOENT"},
        {"read a linked file of a locked folder", "ENOENT"},
        {"read a linked resource", "done"},
        {"read a resource behind two links", "done"},
        {"write a linked resource", "EROFS"},
        {"read the passwords", "ENOENT"},
        {"set where core files go", GetParam() == 0 ? "EROFS" : "EACCES"},
        {"mount", "EPERM"},
        // Memory and disk.
        {"fill half its folder", "done"},
        {"fill its folder", "ENOSPC"},
        {"fill the shared memory", "ENOSPC"},
        {"fill the root", "EROFS"},
        {"fill the devices", "EROFS"},
        {"fill the temporary files", "EROFS"},
        {"enter its folder", "done"},
        {"nest folders", "done"},
        {"lock a folder", "done"},
        // Devices.
        {"open the terminal", "ENXIO"},
        {"type into the terminal", "EBADF"},
        {"open another terminal", "ENOENT"},
        {"read the shared memory", "ENOENT"},
        {"devices", "core fd full null ptmx pts random shm stderr stdin stdout tty urandom zero"},
        // Descriptors and sockets.
        {"descriptors", "0 1 2"},
        {"reach a service's socket", "ENOENT"},
        {"reach an abstract socket", "ECONNREFUSED"},
        {"socket of IPv4", "EAFNOSUPPORT"},
        {"socket of IPv6", "EAFNOSUPPORT"},
        {"socket of packets", "EAFNOSUPPORT"},
        {"socket of the kernel", "EAFNOSUPPORT"},
        {"ring of requests", "EPERM"},
        // The kernel.
        {"clone with namespaces", "EPERM"},
        {"clone3 with namespaces", "ENOSYS"},
        {"unshare", "EPERM"},
        {"setns", "EPERM"},
        {"keep a secret from the user", "EPERM"},
        {"make shared memory", "EPERM"},
        {"leave a queue behind", "done"},
        {"leave semaphores behind", "done"},
        {"CapInh", "0000000000000000"},
        {"CapPrm", "0000000000000000"},
        {"CapEff", "0000000000000000"},
        {"CapBnd", "0000000000000000"},
        {"CapAmb", "0000000000000000"},
        {"NoNewPrivs", "1"},
        // What effects need.
        {"read its bundle", "done"},
        {"write a temporary file", "done"},
        {"write nowhere", "done"},
        {"read the system's files", "done"},
        {"read a preset at home", "done"},
        {"change a preset at home", "EROFS"},
        {"make a bundle at home", "EROFS"},
        {"name a thread", "done"},
        {"run a program", "done"},
    };
    auto outcomes = outcomesIn(host.text());
    EXPECT_EQ(outcomes.size(), expected.size());
    for (const auto& [attempt, outcome] : expected) {
        EXPECT_EQ(outcomes[attempt], outcome) << attempt;
    }
    EXPECT_THAT(host.text(), HasSubstr("\nunharmed\nleft no files\n"));
    EXPECT_THAT(host.text(), Not(HasSubstr("not confined")));
}

TEST_P(Confinement, ChildrenEndWithTheService) {
    for (const int signal : {0, SIGTERM, SIGKILL}) {
        HostileHost host(GetParam(), "children");
        // bubblewrap twice, the service, and a child of each kind.
        const auto processes = host.processes();
        EXPECT_EQ(processes.size(), 6U) << host.text();
        EXPECT_TRUE(std::ranges::all_of(processes, isAlive));
        if (signal == 0) {
            host.end();
            EXPECT_TRUE(host.says("left no processes")) << host.text();
        } else {
            kill(host.id(), signal);
        }
        ASSERT_TRUE(pollUntil([&] { return std::ranges::none_of(processes, isAlive); }))
            << "after signal " << signal;
    }
}

TEST_P(Confinement, LimitsTheNumberOfChildren) {
    HostileHost host(GetParam(), "bomb");
    ASSERT_TRUE(host.says("left ")) << host.text();
    EXPECT_THAT(host.text(), HasSubstr("The plug-in <urn:orvalo:hostile> cannot be used: it died 3 "
                                       "times within 60 s; at last it "));
    EXPECT_THAT(host.text(), HasSubstr("unharmed"));
    EXPECT_THAT(host.text(), HasSubstr("left no processes"));
    if (GetParam() == 0) {
        // The kernel does not limit root.
        EXPECT_THAT(host.text(), HasSubstr(" threads, more than the limit of 512"));
    }
}

TEST_P(Confinement, LimitsTheMemoryOfAllChildren) {
    HostileHost host(GetParam(), "leak");
    EXPECT_TRUE(host.says("of memory, more than the limit of 250 MiB")) << host.text();
    // bubblewrap leaves a process behind when its parent is killed while it starts.
    host.end();
    EXPECT_TRUE(host.says("left no processes")) << host.text();
}

TEST_P(Confinement, AnEffectWithAUIKeepsItsCacheAndSeesNoOther) {
    HostileHost host(GetParam(), "cache");
    ASSERT_TRUE(host.says("\nprocesses ")) << host.text();
    host.end();
    ASSERT_TRUE(host.says("left ")) << host.text();
    // Of two services, one after the other.
    EXPECT_THAT(
        linesWith("<urn:orvalo:hostile>: ", host.text()),
        ElementsAre(EndsWith(": read its shader: ENOENT"), EndsWith(": keep a shader: done"),
                    EndsWith(": read another effect's shader: ENOENT"),
                    EndsWith(": write beside its cache: EROFS"),
                    EndsWith(": read its shader: done"), EndsWith(": keep a shader: done"),
                    EndsWith(": read another effect's shader: ENOENT"),
                    EndsWith(": write beside its cache: EROFS")));
    EXPECT_THAT(host.text(), HasSubstr("\nunharmed\n"));
}

TEST_P(Confinement, AnEffectThatFillsItsCacheLosesIt) {
    HostileHost host(GetParam(), "hoard");
    ASSERT_TRUE(host.says("\nprocesses ")) << host.text();
    host.end();
    ASSERT_TRUE(host.says("left ")) << host.text();
    // The second service has no cache.
    EXPECT_THAT(linesWith("<urn:orvalo:hostile>: ", host.text()),
                ElementsAre(EndsWith(": make a folder in its cache: done"),
                            EndsWith(": lock the folder: done"),
                            HasSubstr("The effect <urn:orvalo:hostile> wrote more than 16 MiB into "
                                      "its cache while it was instantiated; it is started again."),
                            EndsWith(": make a folder in its cache: ENOENT")));
    EXPECT_THAT(host.text(), HasSubstr("\nunharmed\n"));
}

TEST_P(Confinement, OneLineTellsWhatDoesNotHoldWithoutBubblewrap) {
    HostileHost host(GetParam(), "sockets", "/nowhere");
    ASSERT_TRUE(host.says("\nprocesses ")) << host.text();
    EXPECT_EQ(host.processes().size(), 1U);
    host.end();
    ASSERT_TRUE(host.says("left no processes")) << host.text();
    EXPECT_THAT(
        linesWith("WARNING", host.text()),
        ElementsAre(HasSubstr(
            "Effects are not confined, because bubblewrap does not work here (it is not "
            "installed). They can read and change the user's files, fill the disk, see, signal and "
            "slow down other processes, use the user's session, sound and input devices, start any "
            "number of processes and leave them behind, and act as root where the program does; "
            "only the effect's own process is watched for its memory.")));
    // The filter for system calls is left.
    auto outcomes = outcomesIn(host.text());
    EXPECT_EQ(outcomes["reach a service's socket"], "done");
    EXPECT_EQ(outcomes["socket of IPv4"], "EAFNOSUPPORT");
    EXPECT_EQ(outcomes["outlive the host by high bits"], "EPERM");
    EXPECT_EQ(outcomes["descriptors"], "0 1 2");
    // An effect without a UI has no cache: there is no new folder at home.
    EXPECT_THAT(host.text(), HasSubstr("\nunharmed\n"));
}

/// A program called bwrap, for all users.
class Bubblewrap {
  public:
    explicit Bubblewrap(const std::string& script) {
        const auto program = folder_.path() / "bwrap";
        std::ofstream(program) << "#!/bin/sh\n" << script << "\n";
        std::filesystem::permissions(program, std::filesystem::perms(0755));
        std::filesystem::permissions(folder_.path(), std::filesystem::perms(0755));
    }
    std::string path() const { return folder_.path(); }
    /// Shell text that runs the real one.
    static std::string real() {
        const GText program(g_find_program_in_path("bwrap"));
        return "exec " + std::string(program.get()) + " \"$@\"";
    }

  private:
    TemporaryFolder folder_;
};

TEST_P(Confinement, TheLineRepeatsWhatBubblewrapSays) {
    const Bubblewrap bubblewrap("echo 'bwrap: No permissions.' >&2; exit 1");
    HostileHost host(GetParam(), "sockets", bubblewrap.path().c_str());
    ASSERT_TRUE(host.says("\nprocesses ")) << host.text();
    EXPECT_THAT(linesWith("WARNING", host.text()),
                ElementsAre(HasSubstr("bubblewrap does not work here (bwrap: No permissions.).")));
    // Started without bubblewrap.
    EXPECT_EQ(host.processes().size(), 1U);
}

TEST_P(Confinement, AnEffectThatBubblewrapCannotShowDoesNotRun) {
    const Bubblewrap bubblewrap("case $* in */bin/true*) " + Bubblewrap::real() +
                                ";; esac; echo 'bwrap: No bundle.' >&2; exit 1");
    HostileHost host(GetParam(), "sockets", bubblewrap.path().c_str());
    ASSERT_TRUE(host.says("left ")) << host.text();
    EXPECT_THAT(host.text(), HasSubstr("The plug-in <urn:orvalo:hostile> cannot be used: it died 3 "
                                       "times within 60 s; at last it ended with status 1 while it "
                                       "was instantiated. It last said: bwrap: No bundle."));
    EXPECT_THAT(host.text(), Not(HasSubstr("not confined")));
    EXPECT_THAT(host.text(), HasSubstr("left no processes"));
}

TEST_P(Confinement, AnEffectThatWasConfinedNeverRunsWithoutBubblewrap) {
    const Bubblewrap bubblewrap("if mkdir \"$TMPDIR/first\" 2>&-; then " + Bubblewrap::real() +
                                "; fi; echo 'bwrap: No more.' >&2; exit 1");
    // The service is ended before it answers.
    const auto path = bubblewrap.path() + ":/usr/bin:/bin";
    HostileHost host(GetParam(), "hoard", path.c_str());
    ASSERT_TRUE(host.says("left ")) << host.text();
    EXPECT_THAT(host.text(),
                HasSubstr("MiB into its cache while it was instantiated; it is started "
                          "again."));
    EXPECT_THAT(host.text(),
                HasSubstr("it died 3 times within 60 s; at last it ended with status 1 "
                          "while it was instantiated. It last said: bwrap: No more."));
    EXPECT_THAT(host.text(), Not(HasSubstr("not confined")));
}

TEST_P(Confinement, OneLineTellsWhatDoesNotHoldInASandboxWithoutUserNamespaces) {
    // Flatpak makes such a sandbox.
    const Bubblewrap bubblewrap(
        "exec /usr/bin/bwrap --unshare-user --disable-userns --dev-bind / / "
        "/usr/bin/bwrap \"$@\"");
    HostileHost host(GetParam(), "sockets", bubblewrap.path().c_str());
    ASSERT_TRUE(host.says("\nprocesses ")) << host.text();
    EXPECT_EQ(host.processes().size(), 1U);
    host.end();
    ASSERT_TRUE(host.says("left no processes")) << host.text();
    EXPECT_THAT(linesWith("WARNING", host.text()),
                ElementsAre(HasSubstr("Effects are not confined, because bubblewrap does not work "
                                      "here (bwrap: Creating new namespace failed")));
    auto outcomes = outcomesIn(host.text());
    EXPECT_EQ(outcomes["reach a service's socket"], "done");
    EXPECT_EQ(outcomes["socket of IPv4"], "EAFNOSUPPORT");
}

}  // namespace
