#include "platform/audio/bridge/wire/SharedAudio.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "platform/audio/bridge/wire/Futex.h"
#include "platform/foundation/NSError.h"

namespace {

using namespace orvalo;

constexpr SharedAudio::Layout kLayout{2, 3, 5};

SharedAudio mapped(const SharedAudio& audio, const SharedAudio::Layout& layout) {
    return SharedAudio::map(FileDescriptor(dup(audio.descriptor())), layout);
}

std::string refusal(const SharedAudio& audio, const SharedAudio::Layout& layout) {
    try {
        mapped(audio, layout);
        return {};
    } catch (const NSError& error) {
        return error.localizedDescription();
    }
}

TEST(SharedAudio, IsTheSameMemoryInHostAndService) {
    const auto host = SharedAudio::make(kLayout);
    const auto service = mapped(host, kLayout);
    const auto same = [&](float* ours, const float* theirs, float value) {
        EXPECT_EQ(*theirs, 0.0F);
        *ours = value;
        EXPECT_EQ(*theirs, value);
    };
    const auto last = kMaximumOfflineFrames - 1;
    float value = 1.0F;
    for (const auto block : {&SharedAudio::input, &SharedAudio::output}) {
        const auto ours = (host.*block)(kMaximumOfflineFrames);
        const auto theirs = (service.*block)(kMaximumOfflineFrames);
        ASSERT_EQ(ours.channelCount, theirs.channelCount);
        for (std::uint32_t channel = 0; channel < ours.channelCount; ++channel) {
            same(ours.channels[channel], theirs.channels[channel], value++);
            same(ours.channels[channel] + last, theirs.channels[channel] + last, value++);
        }
    }
    EXPECT_EQ(host.input(7).channelCount, 2U);
    EXPECT_EQ(host.output(7).channelCount, 3U);
    EXPECT_EQ(host.output(7).frameCount, 7U);
    ASSERT_EQ(host.events().size(), SharedAudio::kEventAreaSize);
    host.events().front() = std::byte{1};
    host.events().back() = std::byte{2};
    EXPECT_EQ(service.events().front(), std::byte{1});
    EXPECT_EQ(service.events().back(), std::byte{2});
    ASSERT_EQ(host.controlValues().size(), 5U);
    service.controlValues().front() = 3.0F;
    service.controlValues().back() = 4.0F;
    EXPECT_EQ(host.controlValues().front(), 3.0F);
    EXPECT_EQ(host.controlValues().back(), 4.0F);
    service.control().response = 9;
    EXPECT_EQ(host.control().response, 9U);
    // No area overlaps another.
    EXPECT_EQ(host.input(1).channels[0][0], 1.0F);
    EXPECT_EQ(host.output(1).channels[2][last], value - 1.0F);
}

TEST(SharedAudio, CannotBeResized) {
    const auto host = SharedAudio::make(kLayout);
    const FileDescriptor theirs(dup(host.descriptor()));
    struct stat status {};
    ASSERT_EQ(fstat(theirs.get(), &status), 0);
    EXPECT_NE(ftruncate(theirs.get(), 0), 0);
    EXPECT_NE(ftruncate(theirs.get(), status.st_size - 4096), 0);
    EXPECT_NE(ftruncate(theirs.get(), status.st_size + 4096), 0);
    EXPECT_NE(fcntl(theirs.get(), F_ADD_SEALS, F_SEAL_WRITE), 0);
    EXPECT_EQ(fcntl(theirs.get(), F_GET_SEALS), F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL);
    struct stat after {};
    ASSERT_EQ(fstat(theirs.get(), &after), 0);
    EXPECT_EQ(after.st_size, status.st_size);
}

TEST(SharedAudio, MapThrowsForAnotherSize) {
    const std::string extent = "The memory shared with the host has the wrong size.";
    const auto host = SharedAudio::make(kLayout);
    EXPECT_EQ(refusal(host, kLayout), "");
    EXPECT_EQ(refusal(host, {2, 4, 5}), extent);
    EXPECT_EQ(refusal(host, {1, 3, 5}), extent);
    EXPECT_EQ(refusal(host, {2, 3, 5000}), extent);
    EXPECT_EQ(refusal(host, {0xFFFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFFFU}), extent);
    EXPECT_THROW(SharedAudio::map(FileDescriptor(), kLayout), NSError);
    FileDescriptor empty(memfd_create("empty", MFD_CLOEXEC));
    EXPECT_THROW(SharedAudio::map(std::move(empty), kLayout), NSError);
}

TEST(SharedAudio, CanBeMoved) {
    auto first = SharedAudio::make({1, 0, 0});
    *first.input(1).channels[0] = 0.5F;
    const auto second = std::move(first);
    EXPECT_EQ(*second.input(1).channels[0], 0.5F);
    EXPECT_EQ(second.output(1).channelCount, 0U);
}

/// Bounds every wait when the test fails.
Futex::Deadline farOff() {
    return std::chrono::steady_clock::now() + std::chrono::seconds(30);
}

TEST(Futex, HandsQuantaToAnotherProcessAndBack) {
    constexpr std::uint32_t kQuanta = 1000;
    const auto host = SharedAudio::make({1, 1, 0});
    const pid_t other = fork();
    if (other == 0) {
        const auto service = mapped(host, {1, 1, 0});
        auto& control = service.control();
        for (std::uint32_t answered = 0; answered < kQuanta;) {
            const auto request = control.request.load(std::memory_order_acquire);
            if (request == answered) {
                Futex::wait(control.request, answered, farOff());
                continue;
            }
            *service.output(1).channels[0] = 2.0F * *service.input(1).channels[0];
            control.response.store(answered = request, std::memory_order_release);
            Futex::wake(control.response);
        }
        _exit(0);
    }
    auto& control = host.control();
    const auto deadline = farOff();
    for (std::uint32_t quantum = 1; quantum <= kQuanta; ++quantum) {
        *host.input(1).channels[0] = static_cast<float>(quantum);
        control.request.store(quantum, std::memory_order_release);
        Futex::wake(control.request);
        while (control.response.load(std::memory_order_acquire) != quantum &&
               std::chrono::steady_clock::now() < deadline) {
            Futex::wait(control.response, quantum - 1, deadline);
        }
        ASSERT_EQ(*host.output(1).channels[0], 2.0F * static_cast<float>(quantum));
    }
    int status = -1;
    waitpid(other, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST(Futex, WaitsWhileTheWordHasTheValueAndUntilTheDeadline) {
    std::atomic<std::uint32_t> word{1};
    Futex::wait(word, 2, farOff());
    const auto start = std::chrono::steady_clock::now();
    const auto deadline = start + std::chrono::milliseconds(20);
    while (std::chrono::steady_clock::now() < deadline) {
        Futex::wait(word, 1, deadline);
    }
    Futex::wait(word, 1, start);
    EXPECT_EQ(word.load(), 1U);
}

TEST(Futex, WakesAllWaiters) {
    std::atomic<std::uint32_t> word{0};
    std::atomic<int> woken{0};
    std::vector<std::thread> waiting;
    waiting.reserve(3);
    for (int count = 0; count < 3; ++count) {
        waiting.emplace_back([&] {
            while (word.load() == 0) {
                Futex::wait(word, 0, farOff());
            }
            ++woken;
        });
    }
    word = 1;
    Futex::wake(word);
    for (auto& thread : waiting) {
        thread.join();
    }
    EXPECT_EQ(woken, 3);
}

}  // namespace
