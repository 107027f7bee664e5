#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>
#include <iterator>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/MessageChannel.h"
#include "tests/platform/audio/bridge/wire/Messages.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using Result = MessageChannel::Result;

/// A channel and the plain socket at its other end.
class Channel : public ::testing::Test {
  protected:
    Channel() : Channel(makePair()) {}

    /// Calls receive() once; appends the messages to received_.
    Result receive() {
        return channel_.receive([this](std::uint32_t type, auto bytes) {
            received_.emplace_back(type, std::vector<std::byte>(bytes.begin(), bytes.end()));
            return isAccepted_;
        });
    }
    void sendBare(std::span<const std::byte> bytes, const std::vector<int>& passed = {}) const {
        iovec part{const_cast<std::byte*>(bytes.data()), bytes.size()};
        msghdr header{};
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        alignas(cmsghdr) std::array<char, CMSG_SPACE(8 * sizeof(int))> control{};
        if (!passed.empty()) {
            header.msg_control = control.data();
            header.msg_controllen = CMSG_SPACE(passed.size() * sizeof(int));
            auto* entry = CMSG_FIRSTHDR(&header);
            entry->cmsg_level = SOL_SOCKET;
            entry->cmsg_type = SCM_RIGHTS;
            entry->cmsg_len = CMSG_LEN(passed.size() * sizeof(int));
            std::memcpy(CMSG_DATA(entry), passed.data(), passed.size() * sizeof(int));
        }
        ASSERT_EQ(sendmsg(bare_.get(), &header, 0), static_cast<ssize_t>(bytes.size()));
    }
    std::vector<std::byte> readBare(std::size_t most) const {
        std::vector<std::byte> bytes(most);
        const auto count = read(bare_.get(), bytes.data(), bytes.size());
        bytes.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
        return bytes;
    }

    FileDescriptor bare_;
    MessageChannel channel_;
    std::vector<std::pair<std::uint32_t, std::vector<std::byte>>> received_;
    bool isAccepted_ = true;
    const std::vector<std::byte> ping_ = bridge::encode(bridge::HostMessage(bridge::Ping{5}));

  private:
    static std::array<int, 2> makePair() {
        std::array<int, 2> ends{-1, -1};
        socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data());
        return ends;
    }
    explicit Channel(const std::array<int, 2>& ends)
        : bare_(ends[0]), channel_(FileDescriptor(ends[1])) {}
};

std::size_t openDescriptors() {
    namespace fs = std::filesystem;
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator()));
}

FileDescriptor makeFile(const char* text) {
    FileDescriptor file(memfd_create("passed", MFD_CLOEXEC));
    EXPECT_EQ(write(file.get(), text, std::strlen(text)), static_cast<ssize_t>(std::strlen(text)));
    return file;
}

std::string textOf(const FileDescriptor& file) {
    std::array<char, 16> text{};
    const auto count = pread(file.get(), text.data(), text.size(), 0);
    return {text.data(), count < 0 ? 0 : static_cast<std::size_t>(count)};
}

TEST_F(Channel, DeliversMessagesInOrder) {
    std::vector<std::byte> bytes;
    const auto messages = hostMessages();
    for (const auto& message : messages) {
        const auto encoded = bridge::encode(message);
        bytes.insert(bytes.end(), encoded.begin(), encoded.end());
    }
    sendBare(bytes);
    EXPECT_EQ(receive(), Result::waiting);
    ASSERT_EQ(received_.size(), messages.size());
    for (std::size_t type = 0; type < messages.size(); ++type) {
        EXPECT_EQ(received_[type].first, type);
        EXPECT_EQ(received_[type].second, bodyOf(bridge::encode(messages[type])));
    }
    EXPECT_FALSE(channel_.hasPart());
}

TEST_F(Channel, JoinsAMessageThatArrivesByteByByte) {
    for (int round = 0; round < 2; ++round) {
        for (const auto byte : ping_) {
            EXPECT_EQ(received_.size(), static_cast<std::size_t>(round));
            sendBare({&byte, 1});
            EXPECT_EQ(receive(), Result::waiting);
        }
    }
    ASSERT_EQ(received_.size(), 2U);
    EXPECT_EQ(received_[1].second, bodyOf(ping_));
}

TEST_F(Channel, NeverBlocksAndKeepsTheBytesThatTheSocketRefuses) {
    std::vector<std::byte> sent;
    while (!channel_.isWaiting()) {
        auto bytes = bridge::encode(serviceMessages()[1]);
        sent.insert(sent.end(), bytes.begin(), bytes.end());
        channel_.send(std::move(bytes));
    }
    channel_.send(ping_);
    sent.insert(sent.end(), ping_.begin(), ping_.end());
    std::vector<std::byte> arrived;
    while (arrived.size() < sent.size()) {
        const auto bytes = readBare(10000);
        ASSERT_FALSE(bytes.empty());
        arrived.insert(arrived.end(), bytes.begin(), bytes.end());
        channel_.flush();
    }
    EXPECT_EQ(arrived, sent);
    EXPECT_FALSE(channel_.isWaiting());
}

TEST_F(Channel, IsClosedWhenThePeerCloses) {
    sendBare(ping_);
    sendBare(std::span(ping_).first(13));
    bare_ = FileDescriptor();
    EXPECT_EQ(receive(), Result::closed);
    EXPECT_EQ(received_.size(), 1U);
    EXPECT_TRUE(channel_.hasPart());
    // Sending to a closed socket raises no SIGPIPE.
    channel_.send(ping_);
    EXPECT_FALSE(channel_.isWaiting());
    EXPECT_EQ(receive(), Result::closed);
}

TEST_F(Channel, HasNoPartWhenClosedBetweenMessages) {
    sendBare(ping_);
    bare_ = FileDescriptor();
    EXPECT_EQ(receive(), Result::closed);
    EXPECT_FALSE(channel_.hasPart());
}

/// An invalid head.
class ChannelHead : public Channel, public ::testing::WithParamInterface<std::size_t> {};

TEST_P(ChannelHead, BreaksTheChannelAfterTheMessagesBeforeIt) {
    auto wrong = ping_;
    const std::uint32_t value = 0xFFFFFFFFU;
    std::memcpy(wrong.data() + GetParam() * sizeof(value), &value, sizeof(value));
    sendBare(ping_);
    sendBare(wrong);
    sendBare(ping_);
    EXPECT_EQ(receive(), Result::broken);
    EXPECT_EQ(received_.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(VersionAndLength, ChannelHead, ::testing::Values(0U, 2U));

TEST_F(Channel, IsBrokenByAHandlerThatReturnsFalse) {
    isAccepted_ = false;
    sendBare(ping_);
    sendBare(ping_);
    EXPECT_EQ(receive(), Result::broken);
    EXPECT_EQ(received_.size(), 1U);
}

TEST_F(Channel, ReturnsAfterALimitedNumberOfReads) {
    // More than one receive() reads.
    const std::vector<std::byte> piece = bridge::encode(serviceMessages()[0]);
    fcntl(bare_.get(), F_SETFL, O_NONBLOCK);
    std::size_t sent = 0;
    while (send(bare_.get(), piece.data(), piece.size(), 0) == static_cast<ssize_t>(piece.size())) {
        ++sent;
    }
    ASSERT_GT(sent, 100U);
    while (received_.size() < sent) {
        const auto before = received_.size();
        EXPECT_EQ(receive(), Result::waiting);
        ASSERT_GT(received_.size(), before);
    }
}

TEST_F(Channel, PassesADescriptorWithTheFirstByte) {
    const auto file = makeFile("mine");
    MessageChannel other(std::move(bare_));
    other.send(ping_, file.get());
    EXPECT_FALSE(channel_.takePassed());
    EXPECT_EQ(receive(), Result::waiting);
    const auto passed = channel_.takePassed();
    ASSERT_TRUE(passed);
    EXPECT_NE(passed.get(), file.get());
    EXPECT_EQ(textOf(passed), "mine");
    EXPECT_EQ(fcntl(passed.get(), F_GETFD), FD_CLOEXEC);
    EXPECT_FALSE(channel_.takePassed());
}

TEST_F(Channel, KeepsTheLastOfManyDescriptorsAndClosesTheOthers) {
    const auto first = makeFile("first");
    const auto second = makeFile("second");
    const auto third = makeFile("third");
    const auto before = openDescriptors();
    sendBare(ping_, {first.get(), second.get()});
    EXPECT_EQ(receive(), Result::waiting);
    EXPECT_EQ(openDescriptors(), before + 1);
    sendBare(ping_, {first.get(), second.get(), third.get(), first.get()});
    EXPECT_EQ(receive(), Result::waiting);
    sendBare(ping_, {third.get()});
    EXPECT_EQ(receive(), Result::waiting);
    EXPECT_EQ(openDescriptors(), before + 1);
    EXPECT_EQ(textOf(channel_.takePassed()), "third");
    EXPECT_EQ(openDescriptors(), before);
}

}  // namespace
