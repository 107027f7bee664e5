#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <random>

#include "tests/programs/effect-service/HostedEffect.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

constexpr const char* kInvalidMessage = "The host sent an invalid message; the service ends.\n";

/// The exit status and the standard error of a service.
struct End {
    int status;
    std::string errors;

    friend bool operator==(const End&, const End&) = default;
};

void PrintTo(const End& end, std::ostream* stream) {
    *stream << "status " << end.status << ", \"" << end.errors << '"';
}

End endOf(ServiceProgram& service) {
    const int status = service.waitForEnd();
    return {status, service.standardError()};
}

/// A message whose head has another number at that place.
std::vector<std::byte> withHead(std::size_t place, std::uint32_t value) {
    auto bytes = bridge::encode(bridge::HostMessage(bridge::Ping{1}));
    std::memcpy(bytes.data() + place * sizeof(value), &value, sizeof(value));
    return bytes;
}

TEST(ServiceEnd, StatusIs0WhenTheHostClosesTheSocket) {
    ServiceProgram unused;
    unused.closeSocket();
    EXPECT_EQ(endOf(unused), (End{0, ""}));
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.renderQuantum(64);
    EXPECT_FALSE(effect.service.hasEnded());
    effect.service.closeSocket();
    EXPECT_EQ(endOf(effect.service), (End{0, ""}));
}

TEST(ServiceEnd, EndsAtOnceWhenTheHostIsNotItsParent) {
    ServiceProgram service(getppid());
    EXPECT_EQ(endOf(service), (End{0, ""}));
}

TEST(ServiceEnd, EndsWithTheHostEvenWhileStopped) {
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const pid_t host = fork();
    if (host == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
        effect.mustInstantiate();
        const pid_t service = effect.service.id();
        // A stopped process does not notice the closed socket.
        kill(service, SIGSTOP);
        const bool isTold = write(ends[1], &service, sizeof(service)) == sizeof(service);
        pause();
        _exit(isTold ? 0 : 1);
    }
    pid_t service = -1;
    ASSERT_EQ(read(ends[0], &service, sizeof(service)), static_cast<ssize_t>(sizeof(service)));
    const FileDescriptor handle(static_cast<int>(syscall(SYS_pidfd_open, service, 0)));
    ASSERT_TRUE(handle);
    kill(host, SIGKILL);
    waitpid(host, nullptr, 0);
    pollfd end{handle.get(), POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 30000), 1);
    close(ends[0]);
    close(ends[1]);
}

TEST(ServiceEnd, ARequestBeforeTheEffectIsAnError) {
    ServiceProgram service;
    service.send(bridge::Ping{1});
    EXPECT_EQ(endOf(service),
              (End{1, "The host sent a request before the effect; the service ends.\n"}));
}

TEST(ServiceEnd, AnEffectWithoutMemoryIsAnError) {
    ServiceProgram service;
    service.send(bridge::Instantiate{});
    EXPECT_EQ(endOf(service), (End{1, "The host passed no shared memory; the service ends.\n"}));
}

TEST(ServiceEnd, ASecondEffectIsAnError) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.service.send(effect.request, effect.audio().descriptor());
    EXPECT_EQ(endOf(effect.service),
              (End{1, "The host requested a second effect; the service ends.\n"}));
}

TEST(ServiceEnd, AnIncompleteMessageIsAnError) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    auto bytes = bridge::encode(bridge::HostMessage(effect.request));
    bytes.resize(bytes.size() - 1);
    effect.service.sendBytes(std::move(bytes), effect.audio().descriptor());
    effect.service.closeSocket();
    EXPECT_EQ(endOf(effect.service), (End{1, kInvalidMessage}));
}

TEST(ServiceEnd, GarbageIsAnError) {
    std::mt19937 generator(7);
    std::vector<std::byte> garbage(10000);
    for (auto& byte : garbage) {
        byte = static_cast<std::byte>(generator());
    }
    for (const auto& bytes : {garbage, withHead(0, 0), withHead(1, 99), withHead(2, 3),
                              withHead(2, bridge::kLongestMessage + 1)}) {
        ServiceProgram service;
        service.sendBytes(bytes);
        EXPECT_EQ(endOf(service), (End{1, kInvalidMessage}));
    }
}

TEST(ServiceEnd, GarbageAfterTheEffectIsAnError) {
    HostedEffect effect(ORVALO_ZOO, "urn:orvalo:zoo:probe");
    effect.mustInstantiate();
    effect.service.sendBytes(withHead(1, 99));
    EXPECT_EQ(endOf(effect.service), (End{1, kInvalidMessage}));
}

}  // namespace
