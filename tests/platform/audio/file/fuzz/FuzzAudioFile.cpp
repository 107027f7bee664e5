// Reads mutations of sound files to their ends: whatever a file holds, it is refused with an
// NSError, or read() gives exactly the length that it has stated.
//
//     fuzz_audio_file SEEDS [ITERATIONS [FIRST]]    iterations FIRST, FIRST + 1, ... of the seeds
//     fuzz_audio_file FILE                          one file as it is
//
// The program prints the path of its current input first; the file remains when the program dies.

#include <glib.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "platform/audio/file/AVAudioFile.h"
#include "platform/foundation/NSError.h"
#include "tests/testing/FileBytes.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

using Random = std::mt19937_64;

// Longer than any input of a few thousand bytes may take, sanitized and on a busy machine.
constexpr unsigned kMostSeconds = 60;

// Inputs may state a long silence, so reading stops here.
constexpr std::int64_t kMostFramesRead = 2'000'000;

std::size_t below(Random& random, std::size_t bound) {
    return bound == 0 ? 0 : random() % bound;
}

std::vector<std::string> seedsIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        paths.push_back(entry.path());
    }
    std::ranges::sort(paths);
    std::vector<std::string> seeds;
    std::ranges::transform(paths, std::back_inserter(seeds), bytesOf);
    return seeds;
}

// Headers lie at the ends of files: half of the places are near one.
std::size_t place(Random& random, const std::string& bytes) {
    const auto near = std::min<std::size_t>(bytes.size(), 200);
    switch (random() % 4) {
        case 0:
            return below(random, near);
        case 1:
            return bytes.size() - near + below(random, near);
        default:
            return below(random, bytes.size());
    }
}

void mutate(Random& random, std::string& bytes, const std::string& other) {
    if (bytes.empty()) {
        return;
    }
    const auto at = place(random, bytes);
    const auto count = std::min(below(random, 64) + 1, bytes.size() - at);
    switch (random() % 7) {
        case 0:
            bytes[at] = static_cast<char>(bytes[at] ^ (1 << random() % 8));
            break;
        case 1:
            bytes[at] = static_cast<char>(random());
            break;
        case 2:  // Numbers that are extreme in 4 bytes.
            for (std::size_t index = 0; index < std::min<std::size_t>(4, bytes.size() - at);
                 ++index) {
                bytes[at + index] = random() % 2 == 0 ? '\xFF' : '\x7F';
            }
            break;
        case 3:
            bytes.resize(at);
            break;
        case 4:
            bytes.erase(at, count);
            break;
        case 5:
            bytes.insert(at, bytes.substr(below(random, bytes.size()), count));
            break;
        default:
            bytes.replace(at, count, other, below(random, other.size()), count);
            break;
    }
}

// Throws std::logic_error when read() or the end of the file contradicts length().
void readThrough(const std::filesystem::path& path) {
    std::shared_ptr<AVAudioFile> file;
    try {
        file = AVAudioFile::forReading(URL::fileURLWithPath(path.string()));
    } catch (const NSError&) {
        return;
    }
    AVAudioPCMBuffer buffer(file->processingFormat(), 4096);
    const auto readOn = [&] {
        const auto due = file->length() - file->framePosition();
        std::int64_t total = 0;
        while (total < std::min(due, kMostFramesRead)) {
            file->read(buffer);
            const auto expected = std::min<std::int64_t>(4096, due - total);
            if (buffer.frameLength != expected) {
                throw std::logic_error("read() gave another count than the length");
            }
            total += buffer.frameLength;
        }
    };
    readOn();
    file->setFramePosition(file->length() / 3);
    readOn();
    file->setFramePosition(file->length() - 10000);
    readOn();
    file->read(buffer);
    if (file->length() < 1 ||
        (file->framePosition() == file->length()) == (buffer.frameLength > 0)) {
        throw std::logic_error("the end is not where the length says");
    }
}

void readMutations(const std::filesystem::path& seedFolder, std::uint64_t iterations,
                   std::uint64_t first) {
    const TemporaryFolder folder;
    const auto path = folder.path() / "input";
    std::cerr << "The input at hand is " << path.string() << '\n';
    const auto seeds = seedsIn(seedFolder);
    for (std::uint64_t iteration = first; iteration < first + iterations; ++iteration) {
        Random random(iteration);
        auto bytes = seeds.at(below(random, seeds.size()));
        const auto& other = seeds.at(below(random, seeds.size()));
        for (auto count = 1 + below(random, 8); count > 0; --count) {
            mutate(random, bytes, other);
        }
        std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
        alarm(kMostSeconds);
        readThrough(path);
    }
    std::cerr << iterations << " inputs read\n";
}

}  // namespace
}  // namespace orvalo::testing

// NOLINTNEXTLINE(bugprone-exception-escape): a finding is to end the program.
int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.empty()) {
        std::cerr << "fuzz_audio_file SEEDS [ITERATIONS [FIRST]] | FILE\n";
        return EXIT_FAILURE;
    }
    // Damaged files cause warnings; they are not checked.
    g_log_set_handler(
        "Orvalo", G_LOG_LEVEL_MASK,
        [](const gchar* /*domain*/, GLogLevelFlags /*level*/, const gchar* /*text*/,
           gpointer /*data*/) {},
        nullptr);
    if (!std::filesystem::is_directory(arguments[0])) {
        orvalo::testing::readThrough(arguments[0]);
        return EXIT_SUCCESS;
    }
    const auto iterations = arguments.size() > 1 ? std::stoull(arguments[1]) : 1000;
    const auto first = arguments.size() > 2 ? std::stoull(arguments[2]) : 0;
    orvalo::testing::readMutations(arguments[0], iterations, first);
    return EXIT_SUCCESS;
}
