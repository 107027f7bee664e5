#include "platform/foundation/ProcessInfo.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace orvalo {
namespace {

TEST(ProcessInfo, DescribesThisProcess) {
    const auto& info = ProcessInfo::processInfo();
    EXPECT_EQ(info.processName(), "foundation_test");
    EXPECT_EQ(info.processIdentifier(), getpid());
    EXPECT_EQ(&info, &ProcessInfo::processInfo());
}

TEST(ProcessInfo, AGloballyUniqueStringIsAVersion4UUID) {
    const auto text = ProcessInfo::processInfo().globallyUniqueString();
    ASSERT_EQ(text.size(), 36U);
    for (std::size_t index = 0; index < text.size(); ++index) {
        const auto isHyphen = index == 8 || index == 13 || index == 18 || index == 23;
        const std::string allowed = isHyphen ? "-" : index == 14 ? "4" : "0123456789ABCDEF";
        EXPECT_NE(allowed.find(text[index]), std::string::npos) << text << " at " << index;
    }
    EXPECT_NE(std::string("89AB").find(text[19]), std::string::npos) << text;
}

TEST(ProcessInfo, GloballyUniqueStringsOfManyThreadsDiffer) {
    constexpr std::size_t kEach = 2000;
    std::mutex mutex;
    std::set<std::string> seen;
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int index = 0; index < 4; ++index) {
        threads.emplace_back([&] {
            for (std::size_t count = 0; count < kEach; ++count) {
                auto text = ProcessInfo::processInfo().globallyUniqueString();
                const std::lock_guard lock(mutex);
                seen.insert(std::move(text));
            }
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(seen.size(), 4 * kEach);
}

TEST(ProcessInfo, AForkReturnsOtherGloballyUniqueStrings) {
    ProcessInfo::processInfo().globallyUniqueString();
    std::array<int, 2> ends{};
    ASSERT_EQ(pipe(ends.data()), 0);
    const auto child = fork();
    if (child == 0) {
        const auto text = ProcessInfo::processInfo().globallyUniqueString();
        const auto written = write(ends[1], text.data(), text.size());
        _exit(written == static_cast<ssize_t>(text.size()) ? 0 : 1);
    }
    const auto ours = ProcessInfo::processInfo().globallyUniqueString();
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(status, 0);
    std::array<char, 64> theirs{};
    ASSERT_EQ(read(ends[0], theirs.data(), theirs.size()), static_cast<ssize_t>(ours.size()));
    EXPECT_NE(ours, theirs.data());
    close(ends[0]);
    close(ends[1]);
}

}  // namespace
}  // namespace orvalo
