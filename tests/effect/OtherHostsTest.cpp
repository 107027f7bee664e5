#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <jack/jack.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <memory>

#include "tests/effect/EffectHost.h"
#include "tests/testing/PrivateJack.h"
#include "tests/testing/Program.h"
#include "tests/testing/ServerProcess.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/WaitUntil.h"

namespace {

using namespace orvalo::testing;

struct Setting {
    const char* symbol;
    float value;
};

/// Something of everything that version 0.1 did not have.
constexpr std::array<Setting, 12> settings{{{"threshold", -30.0F},
                                            {"look_ahead", 5.0F},
                                            {"hold", 20.0F},
                                            {"ceiling_on", 1.0F},
                                            {"ceiling", -6.0F},
                                            {"detector", 1.0F},
                                            {"adaptive", 1.0F},
                                            {"oversampling", 1.0F},
                                            {"sc_highpass", 120.0F},
                                            {"stereo_mode", 1.0F},
                                            {"side_amount", 50.0F},
                                            {"auto_makeup", 1.0F}}};

/// Files through the programs of other projects, which must give what the effect gives in blocks of
/// any length. None of them compensates for the latency.
class OtherHostsTest : public testing::Test {
  protected:
    OtherHostsTest() {
        // NOLINTBEGIN(concurrency-mt-unsafe): the process has one thread.
        setenv("LV2_PATH", EFFECT_LV2_PATH, 1);
        setenv("GST_REGISTRY", file("registry").c_str(), 1);
        // NOLINTEND(concurrency-mt-unsafe)
        std::ofstream raw(file("input.raw"), std::ios::binary);
        for (std::size_t i = 0; i < input_.left.size(); ++i) {
            for (const float sample : {input_.left[i], input_.right[i]}) {
                // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): streams take bytes.
                raw.write(reinterpret_cast<const char*>(&sample), sizeof sample);
            }
        }
        raw.close();
        run({"ffmpeg", "-loglevel", "error", "-f", "f32le", "-ar", "48000", "-ac", "2", "-i",
             file("input.raw"), "-c:a", "pcm_f32le", file("input.wav")});
    }

    std::string file(const std::string& name) const { return (folder_.path() / name).string(); }

    static void run(const std::vector<std::string>& command) {
        Program program(command);
        program.readAll();
        ASSERT_EQ(program.wait(), 0) << command[0] << ": " << program.standardError();
    }

    /// The samples of output.wav.
    Stereo output() const {
        run({"ffmpeg", "-loglevel", "error", "-i", file("output.wav"), "-f", "f32le",
             file("output.raw")});
        std::ifstream raw(file("output.raw"), std::ios::binary);
        Stereo result;
        std::array<float, 2> frame{};
        // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): streams take bytes.
        while (raw.read(reinterpret_cast<char*>(frame.data()), sizeof frame)) {
            result.left.push_back(frame[0]);
            result.right.push_back(frame[1]);
        }
        return result;
    }

    Stereo expected() const {
        EffectHost host;
        for (const auto& [symbol, value] : settings) {
            host.control(symbol) = value;
        }
        host.activate();
        auto result = host.render(input_);
        EXPECT_EQ(host.control("latency"), 240.0F + 48.0F + 81.0F);
        return result;
    }

  private:
    TemporaryFolder folder_;
    const Stereo input_ = noiseBursts(48000);
};

TEST_F(OtherHostsTest, Lv2applyPlaysWhatTheEffectGives) {
    std::vector<std::string> command{"lv2apply", "-i", file("input.wav"), "-o", file("output.wav")};
    for (const auto& [symbol, value] : settings) {
        command.insert(command.end(), {"-c", symbol, std::to_string(value)});
    }
    command.emplace_back("urn:tessaly:orvalo");
    run(command);
    EXPECT_EQ(output(), expected());
}

TEST_F(OtherHostsTest, FfmpegPlaysWhatTheEffectGives) {
    std::string filter = R"(lv2=p=urn\\:tessaly\\:orvalo:c=)";
    for (const auto& [symbol, value] : settings) {
        filter += std::string(symbol) + "=" + std::to_string(value) + "|";
    }
    filter.pop_back();
    run({"ffmpeg", "-loglevel", "error", "-i", file("input.wav"), "-af", filter, "-c:a",
         "pcm_f32le", file("output.wav")});
    EXPECT_EQ(output(), expected());
}

TEST_F(OtherHostsTest, GStreamerPlaysWhatTheEffectGives) {
    // GStreamer switches everything off that is on by default.
    std::vector<std::string> command{"gst-launch-1.0",
                                     "-q",
                                     "filesrc",
                                     "location=" + file("input.wav"),
                                     "!",
                                     "wavparse",
                                     "!",
                                     "urn-tessaly-orvalo",
                                     "enabled=true"};
    for (const auto& [symbol, value] : settings) {
        std::string name = symbol;
        std::replace(name.begin(), name.end(), '_', '-');
        command.push_back(name + "=" + std::to_string(static_cast<int>(value)));
    }
    command.insert(command.end(),
                   {"!", "wavenc", "!", "filesink", "location=" + file("output.wav")});
    run(command);
    EXPECT_EQ(output(), expected());
}

/// jalv as a client of a private JACK server with the dummy driver.
class JackLatencyTest : public testing::Test {
  protected:
    JackLatencyTest() {
        // NOLINTBEGIN(concurrency-mt-unsafe): the process has one thread.
        setenv("LV2_PATH", EFFECT_LV2_PATH, 1);
        // NOLINTEND(concurrency-mt-unsafe)
        jack_set_error_function([](const char* /*message*/) {});
        server_ = jack_.start({"--rate", "48000"});
        EXPECT_TRUE(pollUntil([&] {
            client_.reset(jack_client_open("observer", JackNoStartServer, nullptr));
            return client_ != nullptr;
        }));
    }

    jack_port_t* port(const std::string& name) const {
        return jack_port_by_name(client_.get(), name.c_str());
    }

    /// Frames of latency that a client states at a port, in one of the two directions: jalv 1.6.6
    /// swaps them.
    std::uint32_t latencyOf(const std::string& name) const {
        std::uint32_t sum = 0;
        for (const auto mode : {JackCaptureLatency, JackPlaybackLatency}) {
            jack_latency_range_t range{};
            jack_port_get_latency_range(port(name), mode, &range);
            sum += range.max;
        }
        return sum;
    }

  private:
    struct Close {
        void operator()(jack_client_t* client) const { jack_client_close(client); }
    };
    PrivateJack jack_;
    std::unique_ptr<ServerProcess> server_;
    std::unique_ptr<jack_client_t, Close> client_;
};

TEST_F(JackLatencyTest, JalvReportsTheLookAhead) {
    const ServerProcess jalv({"jalv", "-i", "-n", "effect", "-c", "look_ahead=5", "-c",
                              "ceiling_on=1", "urn:tessaly:orvalo:sidechain"});
    ASSERT_TRUE(pollUntil([&] {
        return port("effect:sc_in_right") != nullptr && latencyOf("effect:out_right") == 240 + 81;
    }));
    EXPECT_EQ(latencyOf("effect:out_left"), 240 + 81);
    EXPECT_NE(port("effect:sc_in_left"), nullptr);
}

}  // namespace
