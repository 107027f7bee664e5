#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <numeric>
#include <thread>

#include "platform/audio/lv2/LV2EventLink.h"
#include "platform/audio/lv2/LV2Sequence.h"
#include "platform/audio/lv2/URIDMap.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

constexpr std::uint32_t kInput = 2;
constexpr std::uint32_t kOutput = 3;
constexpr std::uint32_t kSize = 1024;

std::vector<LV2Port> ports() {
    std::vector<LV2Port> result(5);
    for (std::uint32_t index = 0; index < result.size(); ++index) {
        result[index].index = index;
        result[index].kind = LV2PortKind::control;
    }
    for (const auto index : {kInput, kOutput}) {
        result[index].kind = LV2PortKind::sequence;
        result[index].bufferSize = kSize;
    }
    result[kInput].isInput = true;
    return result;
}

using Bytes = std::vector<std::uint8_t>;

Bytes bytes(std::size_t count, std::uint8_t first) {
    Bytes result(count);
    std::iota(result.begin(), result.end(), first);
    return result;
}

bool send(LV2EventLink& link, const Bytes& body, std::uint32_t port = kInput) {
    return link.send(port, LV2URIDs::shared().atomChunk, static_cast<std::uint32_t>(body.size()),
                     body.data());
}

Bytes body(const LV2_Atom& atom) {
    const auto* begin = reinterpret_cast<const std::uint8_t*>(&atom + 1);
    return {begin, begin + atom.size};
}

/// The bodies of the events of the next quantum; expects all events at its first frame.
std::vector<Bytes> delivered(LV2EventLink& link, bool hasPosition = false) {
    LV2SequenceBuffer buffer(kSize);
    buffer.clearForInput();
    if (hasPosition) {
        buffer.writeTimePosition(0);
    }
    link.deliver(kInput, buffer);
    std::vector<Bytes> result;
    for (LV2SequenceReader reader(buffer.sequence(), buffer.capacity(), 64);
         reader.event() != nullptr; reader.next()) {
        EXPECT_EQ(reader.event()->time.frames, 0);
        result.push_back(body(reader.event()->body));
    }
    return result;
}

struct TestAtom {
    LV2_Atom atom;
    std::array<std::uint8_t, kSize> body;

    explicit TestAtom(const Bytes& bytes) : atom{static_cast<std::uint32_t>(bytes.size()), 1} {
        std::copy(bytes.begin(), bytes.end(), body.begin());
    }
};

TEST(EventLink, DeliversInOrderAtTheFirstFrame) {
    LV2EventLink link(ports());
    EXPECT_TRUE(send(link, bytes(3, 1)));
    EXPECT_TRUE(send(link, bytes(0, 0)));
    EXPECT_TRUE(send(link, bytes(17, 9)));
    EXPECT_EQ(delivered(link), (std::vector<Bytes>{bytes(3, 1), bytes(0, 0), bytes(17, 9)}));
    EXPECT_TRUE(delivered(link).empty());
}

TEST(EventLink, KeepsEventsThatDoNotFitForTheNextQuantum) {
    LV2EventLink link(ports());
    for (std::uint8_t number = 0; number < 5; ++number) {
        EXPECT_TRUE(send(link, bytes(400, number)));
    }
    EXPECT_EQ(delivered(link), (std::vector<Bytes>{bytes(400, 0), bytes(400, 1)}));
    EXPECT_EQ(delivered(link), (std::vector<Bytes>{bytes(400, 2), bytes(400, 3)}));
    EXPECT_EQ(delivered(link), (std::vector<Bytes>{bytes(400, 4)}));
    EXPECT_TRUE(delivered(link).empty());
}

TEST(EventLink, RefusesAnEventTooLargeForTheBuffer) {
    LV2EventLink link(ports());
    // The headers of sequence and event, and a time position, take the rest.
    constexpr std::uint32_t kLongest = kSize - 16 - 72 - 16;
    EXPECT_FALSE(send(link, bytes(kLongest + 1, 0)));
    EXPECT_FALSE(send(link, bytes(std::size_t{4} * kSize, 0)));
    EXPECT_TRUE(send(link, bytes(kLongest, 5)));
    const auto events = delivered(link, true);
    ASSERT_EQ(events.size(), 2U);
    EXPECT_EQ(events[1], bytes(kLongest, 5));
}

TEST(EventLink, RefusesPortsThatAreNoSequenceInputs) {
    LV2EventLink link(ports());
    EXPECT_FALSE(send(link, bytes(1, 0), kOutput));
    EXPECT_FALSE(send(link, bytes(1, 0), 0));
    EXPECT_FALSE(send(link, bytes(1, 0), 99));
    EXPECT_FALSE(link.setSubscribed(kInput, true));
    EXPECT_FALSE(link.setSubscribed(4, true));
    EXPECT_FALSE(link.setSubscribed(99, true));
    EXPECT_TRUE(link.setSubscribed(kOutput, true));
}

TEST(EventLink, HoldsSixteenBuffersAndDropsWholeEventsBeyond) {
    LV2EventLink link(ports());
    ASSERT_TRUE(link.setSubscribed(kOutput, true));
    const TestAtom event(bytes(kSize / 2 - 12, 3));  // Half a buffer with both headers.
    for (int count = 0; count < 34; ++count) {
        link.mirror(kOutput, event.atom);
    }
    EXPECT_EQ(link.takeLostCount(), 2U);
    EXPECT_EQ(link.takeLostCount(), 0U);
    std::uint32_t port = 0;
    int received = 0;
    while (const auto* atom = link.receive(port)) {
        EXPECT_EQ(port, kOutput);
        EXPECT_EQ(body(*atom), bytes(kSize / 2 - 12, 3));
        ++received;
    }
    EXPECT_EQ(received, 32);
}

TEST(EventLink, MirrorsSubscribedPortsOnly) {
    LV2EventLink link(ports());
    std::uint32_t port = 0;
    const TestAtom event(bytes(4, 0));
    link.mirror(kOutput, event.atom);
    EXPECT_EQ(link.receive(port), nullptr);
    link.setSubscribed(kOutput, true);
    link.mirror(kOutput, event.atom);
    EXPECT_NE(link.receive(port), nullptr);
    link.setSubscribed(kOutput, false);
    link.mirror(kOutput, event.atom);
    EXPECT_EQ(link.receive(port), nullptr);
}

TEST(EventLink, CarriesEventsBothWaysBetweenThreads) {
    const auto unit = makeZooUnit("echo");
    const auto link = std::make_shared<LV2EventLink>(unit->data().ports);
    ASSERT_TRUE(link->setSubscribed(3, true));
    unit->connectPluginUI(link);
    constexpr int kEvents = 20000;
    std::atomic<bool> isDone{false};
    std::thread render([&] {
        const auto input = noise(1, 64);
        while (!isDone) {
            renderBlocks(*unit, input, {64}, 64);
        }
    });
    int sent = 0;
    int received = 0;
    while (received < kEvents) {
        if (sent < kEvents && sent - received < 500 &&
            link->send(2, LV2URIDs::shared().atomInt, sizeof(sent), &sent)) {
            ++sent;
        }
        std::uint32_t port = 0;
        while (const auto* atom = link->receive(port)) {
            int number = -1;
            std::memcpy(&number, atom + 1, sizeof(number));
            ASSERT_EQ(number, received);
            ASSERT_EQ(atom->type, LV2URIDs::shared().atomInt);
            ++received;
        }
    }
    isDone = true;
    render.join();
    unit->disconnectPluginUI(link);
    EXPECT_EQ(link->takeLostCount(), 0U);
    EXPECT_EQ(unit->controls().value(5), static_cast<float>(kEvents));
}

TEST(EventLink, StaysConnectedToAnInstanceOfAnotherRate) {
    const auto unit = makeZooUnit("echo");
    const auto link = std::make_shared<LV2EventLink>(unit->data().ports);
    link->setSubscribed(3, true);
    const auto before = unit->connectPluginUI(link);
    EXPECT_EQ(before.number, unit->instanceNumber());
    unit->allocateRenderResources(96000.0);
    EXPECT_EQ(unit->instanceNumber(), before.number + 1);
    ASSERT_TRUE(send(*link, bytes(5, 1)));
    renderBlocks(*unit, noise(1, 64), {64}, 64);
    std::uint32_t port = 0;
    const auto* atom = link->receive(port);
    ASSERT_NE(atom, nullptr);
    EXPECT_EQ(body(*atom), bytes(5, 1));
    unit->disconnectPluginUI(link);
    ASSERT_TRUE(send(*link, bytes(5, 1)));
    renderBlocks(*unit, noise(1, 64), {64}, 64);
    EXPECT_EQ(link->receive(port), nullptr);
}

TEST(EventLink, KeepsAReplacedInstanceUntilThePluginUIDisconnects) {
    const auto unit = makeZooUnit("probe");
    const auto link = std::make_shared<LV2EventLink>(unit->data().ports);
    unit->connectPluginUI(link);
    const int cleanups = probeRecord().cleanups;
    const int deactivations = probeRecord().deactivations;
    unit->allocateRenderResources(96000.0);
    EXPECT_EQ(probeRecord().cleanups, cleanups);
    EXPECT_EQ(probeRecord().deactivations, deactivations + 1);
    unit->disconnectPluginUI(link);
    EXPECT_EQ(probeRecord().cleanups, cleanups + 1);
    EXPECT_EQ(probeRecord().deactivations, deactivations + 1);
}

}  // namespace
