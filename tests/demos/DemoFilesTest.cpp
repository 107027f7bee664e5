#include <ebur128.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <string>
#include <vector>

#include "demos/Composer.h"
#include "demos/catalogue/Piece.h"
#include "demos/sound/StereoSound.h"
#include "tests/demos/DecodedFile.h"
#include "tests/testing/FileBytes.h"
#include "tests/testing/TemporaryFolder.h"

using orvalo::catalogue;
using orvalo::testing::bytesOf;
using orvalo::testing::decode;
using orvalo::testing::DecodedFile;

namespace {

constexpr int count = 80;
const std::filesystem::path folder = DEMO_FOLDER;

std::filesystem::path fileOf(int number) {
    return folder / (std::to_string(number) + ".m4a");
}

struct Readings {
    double loudness = 0;
    double truePeak = 0;
};

Readings measure(const DecodedFile& file) {
    std::vector<float> interleaved;
    interleaved.reserve(2 * file.left.size());
    for (std::size_t frame = 0; frame < file.left.size(); ++frame) {
        interleaved.push_back(file.left[frame]);
        interleaved.push_back(file.right[frame]);
    }
    const auto rate = static_cast<unsigned long>(file.rate);
    Readings readings;
    ebur128_state* meter = ebur128_init(2, rate, EBUR128_MODE_I);
    // Three consecutive passes.
    for (int pass = 0; pass < 3; ++pass) {
        ebur128_add_frames_float(meter, interleaved.data(), file.left.size());
    }
    ebur128_loudness_global(meter, &readings.loudness);
    ebur128_destroy(&meter);
    meter = ebur128_init(2, rate, EBUR128_MODE_TRUE_PEAK);
    ebur128_add_frames_float(meter, interleaved.data(), file.left.size());
    for (const unsigned side : {0U, 1U}) {
        double peak = 0;
        ebur128_true_peak(meter, side, &peak);
        readings.truePeak = std::max(readings.truePeak, peak);
    }
    ebur128_destroy(&meter);
    return readings;
}

/// The energy in each fiftieth of a second, without its mean and normalised: a fingerprint of the
/// piece's rhythm and dynamics.
std::vector<double> outline(const DecodedFile& file) {
    const std::size_t step = static_cast<std::size_t>(file.rate) / 50;
    std::vector<double> energies;
    for (std::size_t from = 0; from + step <= file.left.size(); from += step) {
        double sum = 0;
        for (std::size_t frame = from; frame < from + step; ++frame) {
            const double sample = file.left[frame] + file.right[frame];
            sum += sample * sample;
        }
        energies.push_back(std::log(1e-9 + sum));
    }
    return energies;
}

double alike(std::vector<double> one, std::vector<double> other) {
    const std::size_t length = std::min(one.size(), other.size());
    const auto unit = [length](std::vector<double>& values) {
        values.resize(length);
        double mean = 0;
        for (const double value : values) {
            mean += value / static_cast<double>(length);
        }
        double square = 0;
        for (double& value : values) {
            value -= mean;
            square += value * value;
        }
        for (double& value : values) {
            value /= std::sqrt(square);
        }
    };
    unit(one);
    unit(other);
    double sum = 0;
    for (std::size_t index = 0; index < length; ++index) {
        sum += one[index] * other[index];
    }
    return sum;
}

/// Correlation of the waveforms, for both sides.
double sameness(const DecodedFile& one, const DecodedFile& other) {
    const std::size_t length = std::min(one.left.size(), other.left.size());
    double both = 0;
    double first = 0;
    double second = 0;
    for (std::size_t frame = 0; frame < length; ++frame) {
        both += one.left[frame] * other.left[frame];
        first += one.left[frame] * one.left[frame];
        second += other.left[frame] * other.left[frame];
    }
    return both / std::sqrt(first * second);
}

/// The mean square of the second difference around a frame, wrapping at the loop's ends. A click
/// raises it.
double roughness(const std::vector<float>& samples, std::size_t centre) {
    constexpr std::size_t reach = 4;
    const std::size_t frames = samples.size();
    double sum = 0;
    for (std::size_t index = 0; index < 2 * reach; ++index) {
        const std::size_t at = centre + frames - reach + index;
        const double second =
            samples[(at + 1) % frames] - 2.0 * samples[at % frames] + samples[(at - 1) % frames];
        sum += second * second;
    }
    return sum;
}

class DemoFiles : public ::testing::Test {
  protected:
    static void SetUpTestSuite() {
        for (int number = 1; number <= count; ++number) {
            files().push_back(decode(fileOf(number)));
        }
    }
    static void TearDownTestSuite() { files().clear(); }

    static std::vector<DecodedFile>& files() {
        static std::vector<DecodedFile> all;
        return all;
    }
};

TEST_F(DemoFiles, AreStereoAndStateTheComposedLength) {
    for (int number = 1; number <= count; ++number) {
        const DecodedFile& file = files()[static_cast<std::size_t>(number) - 1];
        const auto& piece = catalogue()[static_cast<std::size_t>(number) - 1];
        EXPECT_EQ(file.rate, 48000) << number;
        EXPECT_EQ(file.firstTime, -1024) << number;
        EXPECT_EQ(file.headerFrames, 1024 + piece.frames()) << number;
        EXPECT_EQ(static_cast<std::int64_t>(file.left.size()), piece.frames()) << number;
    }
}

TEST_F(DemoFiles, AreEightyAndSmall) {
    std::uintmax_t bytes = 0;
    int found = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".m4a") {
            ++found;
            bytes += entry.file_size();
        }
    }
    EXPECT_EQ(found, count);
    EXPECT_LT(bytes, 40U * 1000U * 1000U);
    EXPECT_GT(bytes, 10U * 1000U * 1000U);
}

TEST_F(DemoFiles, AreEquallyLoudAndDoNotClip) {
    double softest = 0;
    double loudest = -100;
    for (int number = 1; number <= count; ++number) {
        const Readings readings = measure(files()[static_cast<std::size_t>(number) - 1]);
        EXPECT_NEAR(readings.loudness, orvalo::targetLoudness, 0.5) << number;
        EXPECT_LE(20 * std::log10(readings.truePeak), -1.0) << number;
        softest = std::min(softest, readings.loudness);
        loudest = std::max(loudest, readings.loudness);
    }
    EXPECT_LE(loudest - softest, 1.0);
}

TEST_F(DemoFiles, HaveDynamics) {
    for (int number = 1; number <= count; ++number) {
        const DecodedFile& file = files()[static_cast<std::size_t>(number) - 1];
        double square = 0;
        float peak = 0;
        for (const float sample : file.left) {
            square += static_cast<double>(sample) * sample;
            peak = std::max(peak, std::abs(sample));
        }
        const double crest =
            20 * std::log10(peak / std::sqrt(square / static_cast<double>(file.left.size())));
        EXPECT_GT(crest, 12.0) << number;
    }
}

TEST_F(DemoFiles, KeepTheirLoudnessInMono) {
    for (int number = 1; number <= count; ++number) {
        const DecodedFile& file = files()[static_cast<std::size_t>(number) - 1];
        double middle = 0;
        double side = 0;
        for (std::size_t frame = 0; frame < file.left.size(); ++frame) {
            middle += std::pow(file.left[frame] + file.right[frame], 2);
            side += std::pow(file.left[frame] - file.right[frame], 2);
        }
        EXPECT_LT(side, middle) << number;
    }
}

TEST_F(DemoFiles, DifferFromEachOther) {
    std::vector<std::vector<double>> outlines;
    for (const DecodedFile& file : files()) {
        outlines.push_back(outline(file));
    }
    for (std::size_t one = 0; one < files().size(); ++one) {
        for (std::size_t other = one + 1; other < files().size(); ++other) {
            EXPECT_LT(alike(outlines[one], outlines[other]), 0.9) << one + 1 << ' ' << other + 1;
            EXPECT_LT(std::abs(sameness(files()[one], files()[other])), 0.3)
                << one + 1 << ' ' << other + 1;
        }
    }
}

TEST_F(DemoFiles, HaveASmoothSeam) {
    for (int number = 1; number <= count; ++number) {
        const DecodedFile& file = files()[static_cast<std::size_t>(number) - 1];
        for (const auto* side : {&file.left, &file.right}) {
            std::vector<double> inside;
            for (std::size_t frame = 8; frame + 8 < side->size(); frame += 101) {
                inside.push_back(roughness(*side, frame));
            }
            // A seam on an attack may be as rough as the other attacks.
            const auto place = static_cast<std::ptrdiff_t>(inside.size() * 999 / 1000);
            std::nth_element(inside.begin(), inside.begin() + place, inside.end());
            EXPECT_LE(roughness(*side, 0), inside[static_cast<std::size_t>(place)]) << number;
        }
    }
}

/// Coding noise relative to the signal in 1,024 frames, in dB, wrapping at the loop's ends.
double noise(const DecodedFile& coded, const orvalo::StereoSound& composed, std::size_t from) {
    double error = 1e-12;
    double signal = 1e-12;
    for (std::size_t frame = from; frame < from + 1024; ++frame) {
        const std::size_t at = frame % composed.frames();
        error += std::pow(coded.left[at] - composed.left[at], 2);
        error += std::pow(coded.right[at] - composed.right[at], 2);
        signal += std::pow(composed.left[at], 2) + std::pow(composed.right[at], 2);
    }
    return 10 * std::log10(error / signal);
}

TEST_F(DemoFiles, HaveNoMoreCodingNoiseAtTheSeamThanElsewhere) {
    for (const int number : {12, 17, 40}) {
        const auto index = static_cast<std::size_t>(number) - 1;
        const orvalo::StereoSound composed = orvalo::compose(catalogue()[index], SOUNDFONT);
        const DecodedFile& coded = files()[index];
        ASSERT_EQ(coded.left.size(), composed.frames());
        std::vector<double> elsewhere;
        for (std::size_t from = 4096; from + 4096 < composed.frames(); from += 1024) {
            elsewhere.push_back(noise(coded, composed, from));
        }
        const auto middle = static_cast<std::ptrdiff_t>(elsewhere.size() / 2);
        std::nth_element(elsewhere.begin(), elsewhere.begin() + middle, elsewhere.end());
        const double usual = elsewhere[static_cast<std::size_t>(middle)];
        EXPECT_LE(noise(coded, composed, 0), usual + 6) << number;
        EXPECT_LE(noise(coded, composed, composed.frames() - 1024), usual + 8) << number;
    }
}

/// Runs the composer, discards its output and returns its exit status.
int compose(const std::string& folderAndNumbers) {
    std::string command = "'" COMPOSER "' '" SOUNDFONT "' ";
    command += folderAndNumbers;
    command += " 2> /dev/null";
    const int status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Not compared with the build's files, which another encoder may have made: ORVALO_DEMOS_FROM.
TEST(Composer, MakesTheSameBytesAgain) {
    const orvalo::testing::TemporaryFolder together;
    const orvalo::testing::TemporaryFolder alone;
    ASSERT_EQ(compose("'" + together.path().string() + "' 59 60"), 0);
    ASSERT_EQ(compose("'" + alone.path().string() + "' 60 60"), 0);
    const std::string made = bytesOf(together.path() / "60.m4a");
    EXPECT_FALSE(made.empty());
    EXPECT_TRUE(made == bytesOf(alone.path() / "60.m4a"));
}

TEST_F(DemoFiles, StateTheirTitles) {
    for (int number = 1; number <= count; ++number) {
        const auto& piece = catalogue()[static_cast<std::size_t>(number) - 1];
        EXPECT_NE(bytesOf(fileOf(number)).find(piece.title), std::string::npos) << number;
    }
}

TEST(Composer, RefusesInvalidNumbers) {
    for (const char* numbers : {"0 3", "5 4", "1 81", "one 2", "1 2x", "1"}) {
        EXPECT_EQ(compose(std::string("/nowhere ") + numbers), 2) << numbers;
    }
}

}  // namespace
