// Feeds damaged bytes to all readers of untrusted bytes: the decoders of both sides' messages, the
// channel and the reader of events.
//     wire_fuzz SEED-FOLDER ROUNDS [FIRST]
// A round depends on its number alone: "wire_fuzz <folder> 1 <number>" repeats one. Seeds are files
// of whole messages (host-*, service-*) and of an event area (events-*); "wire_fuzz SEED-FOLDER 0"
// writes the seeds again.

#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/audio/bridge/wire/BridgeMessages.h"
#include "platform/audio/bridge/wire/MessageChannel.h"
#include "platform/audio/bridge/wire/SharedEvents.h"
#include "tests/platform/audio/bridge/wire/Messages.h"
#include "tests/testing/FileBytes.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

namespace fs = std::filesystem;

using Bytes = std::vector<std::byte>;
using Generator = std::mt19937;

struct Counts {
    long decoded = 0;
    long refused = 0;
    long events = 0;
};

[[noreturn]] void fail(const char* what) {
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

Bytes read(const fs::path& path) {
    const auto text = bytesOf(path);
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

void write(const fs::path& path, std::span<const std::byte> bytes) {
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
}

template <typename Message>
void writeSeeds(const fs::path& folder, const std::string& name, const std::vector<Message>& all) {
    for (const auto& message : all) {
        write(folder / (name + std::to_string(message.index())), bridge::encode(message));
    }
}

void writeSeeds(const fs::path& folder) {
    auto fromService = serviceMessages();
    std::get<bridge::State>(fromService[1]).text.resize(100);
    writeSeeds(folder, "host-", hostMessages());
    writeSeeds(folder, "service-", fromService);
    Bytes area(256);
    SharedEventWriter writer(area);
    for (std::uint32_t frame = 0; frame < 60; frame += 10) {
        const std::array<std::byte, 3> note{std::byte{0x90}, std::byte{60}, std::byte{100}};
        writer.write(
            {frame, static_cast<std::uint8_t>(frame % 2), std::span(note).first(1 + frame % 3)});
    }
    write(folder / "events-0", std::span(area).first(writer.used()));
}

std::size_t below(std::size_t limit, Generator& generator) {
    return limit == 0 ? 0 : generator() % limit;
}

/// Makes one to six changes: bits, bytes, boundary values, cuts and copies.
Bytes mutated(Bytes bytes, Generator& generator) {
    constexpr std::array<std::uint32_t, 8> kNumbers{0,
                                                    1,
                                                    0xFFFFFFFFU,
                                                    0x7FFFFFFFU,
                                                    0x80000000U,
                                                    bridge::kLongestMessage,
                                                    bridge::kLongestMessage + 1,
                                                    65536};
    for (auto left = 1 + below(6, generator); left > 0 && !bytes.empty(); --left) {
        const auto at = static_cast<std::ptrdiff_t>(below(bytes.size(), generator));
        const auto length = static_cast<std::ptrdiff_t>(
            std::min(1 + below(16, generator), bytes.size() - static_cast<std::size_t>(at)));
        const auto from = bytes.begin() + at;
        switch (generator() % 5) {
            case 0:
                *from ^= static_cast<std::byte>(1U << generator() % 8U);
                break;
            case 1:
                bytes.erase(from, from + length);
                break;
            case 2: {
                const Bytes part(from, from + length);
                bytes.insert(
                    bytes.begin() + static_cast<std::ptrdiff_t>(below(bytes.size(), generator)),
                    part.begin(), part.end());
                break;
            }
            case 3: {
                const auto number = kNumbers[below(kNumbers.size(), generator)];
                std::memcpy(&*from, &number,
                            std::min(sizeof(number), bytes.size() - static_cast<std::size_t>(at)));
                break;
            }
            default:
                *from = static_cast<std::byte>(generator());
                break;
        }
    }
    return bytes;
}

/// A decoded message must encode to the same bytes.
template <typename Message>
void check(const std::optional<Message>& message, std::uint32_t type,
           std::span<const std::byte> body, Counts& counts) {
    if (!message) {
        ++counts.refused;
        return;
    }
    ++counts.decoded;
    const auto again = bridge::encode(*message);
    if (message->index() != type || again.size() - sizeof(bridge::Head) != body.size() ||
        !std::equal(body.begin(), body.end(), again.begin() + sizeof(bridge::Head))) {
        fail("A message is not what was decoded.");
    }
}

void decode(std::uint32_t type, std::span<const std::byte> body, Counts& counts) {
    check(bridge::decodeHostMessage(type, body), type, body, counts);
    check(bridge::decodeServiceMessage(type, body), type, body, counts);
}

/// Sends the bytes in pieces, some with descriptors, and reads them with a channel.
void useChannel(const Bytes& bytes, Generator& generator, Counts& counts) {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()) != 0) {
        fail("There is no socket.");
    }
    MessageChannel sender{FileDescriptor(ends[0])};
    MessageChannel reader{FileDescriptor(ends[1])};
    std::size_t arrived = 0;
    auto result = MessageChannel::Result::waiting;
    const auto receive = [&] {
        result = reader.receive([&](std::uint32_t type, auto body) {
            arrived += sizeof(bridge::Head) + body.size();
            decode(type, body, counts);
            return generator() % 50 != 0;
        });
    };
    for (std::size_t at = 0; at < bytes.size() && result == MessageChannel::Result::waiting;) {
        const auto count = std::min(1 + below(64, generator), bytes.size() - at);
        const auto from = bytes.begin() + static_cast<std::ptrdiff_t>(at);
        sender.send(Bytes(from, from + static_cast<std::ptrdiff_t>(count)),
                    generator() % 20 == 0 ? STDERR_FILENO : -1);
        at += count;
        receive();
        if (arrived > at) {
            fail("More has come than was sent.");
        }
    }
}

void readEvents(const Bytes& bytes, Generator& generator, Counts& counts) {
    // The used part may be stated larger than the area.
    const auto used = generator() % 4 == 0 ? static_cast<std::uint32_t>(generator())
                                           : static_cast<std::uint32_t>(bytes.size());
    const auto frames = static_cast<std::uint32_t>(1 + below(64, generator));
    Bytes copy(bytes.size() + 3);
    SharedEventReader reader(bytes, used, frames, copy);
    std::uint32_t last = 0;
    for (SharedEvent event; reader.read(event); ++counts.events) {
        if (event.bytes.empty() || event.frame >= frames || event.frame < last ||
            event.bytes.data() != copy.data() || event.bytes.size() > bytes.size()) {
            fail("An event breaks the rules.");
        }
        last = event.frame;
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fputs("wire_fuzz SEED-FOLDER ROUNDS [FIRST]\n", stderr);
        return 2;
    }
    const fs::path folder = argv[1];
    const long rounds = std::strtol(argv[2], nullptr, 10);
    const long first = argc > 3 ? std::strtol(argv[3], nullptr, 10) : 0;
    if (rounds == 0) {
        writeSeeds(folder);
        return 0;
    }
    std::vector<std::pair<std::string, Bytes>> seeds;
    for (const auto& item : fs::directory_iterator(folder)) {
        seeds.emplace_back(item.path().filename(), read(item.path()));
    }
    std::sort(seeds.begin(), seeds.end());
    if (seeds.empty()) {
        fail("There are no seeds.");
    }
    Counts counts;
    for (long round = first; round < first + rounds; ++round) {
        Generator generator(static_cast<Generator::result_type>(round));
        const auto& [name, seed] = seeds[below(seeds.size(), generator)];
        if (name.starts_with("events-")) {
            readEvents(mutated(seed, generator), generator, counts);
            continue;
        }
        const Bytes body(seed.begin() + sizeof(bridge::Head), seed.end());
        decode(static_cast<std::uint32_t>(below(12, generator)), mutated(body, generator), counts);
        // A damaged message between two intact ones.
        auto stream = seeds[below(seeds.size(), generator)].second;
        const auto damaged = mutated(seed, generator);
        stream.insert(stream.end(), damaged.begin(), damaged.end());
        stream.insert(stream.end(), seed.begin(), seed.end());
        useChannel(stream, generator, counts);
    }
    std::printf("%ld rounds: %ld decoded, %ld refused, %ld events\n", rounds, counts.decoded,
                counts.refused, counts.events);
    // Without decoded messages the fuzzer tests nothing.
    return rounds < 100 || (counts.decoded > 0 && counts.refused > 0 && counts.events > 0) ? 0 : 1;
}
