#include "bench/bridge/Contenders.h"

#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <random>
#include <thread>

#include "bench/measuring/Clocks.h"
#include "bench/measuring/Stage.h"
#include "platform/audio/output/RealTimePriority.h"

namespace orvalo::bench {

namespace {

constexpr double kRate = 48000.0;

/// The newest child process.
pid_t newestChildOf(const std::string& process) {
    pid_t newest = -1;
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + process + "/task")) {
        std::ifstream file(task.path() / "children");
        for (pid_t child = 0; file >> child;) {
            newest = std::max(newest, child);
        }
    }
    return newest;
}

/// The service that was started last; bubblewrap's processes are in between.
pid_t newestService() {
    auto process = newestChildOf("self");
    for (std::string name;
         std::getline(std::ifstream("/proc/" + std::to_string(process) + "/comm"), name) &&
         name == "bwrap";) {
        process = newestChildOf(std::to_string(process));
    }
    return process;
}

/// Blocks of noise in two channels.
class Blocks {
  public:
    explicit Blocks(std::uint32_t frames) : frames_(frames) {
        for (auto& channel : samples_) {
            channel.resize(frames);
            std::uniform_real_distribution<float> noise(-0.5F, 0.5F);
            for (auto& sample : channel) {
                sample = noise(random_);
            }
        }
    }

    void render(AUAudioUnit& unit) noexcept {
        const std::array<float*, 2> inputs{samples_[0].data(), samples_[1].data()};
        const std::array<float*, 2> outputs{samples_[2].data(), samples_[3].data()};
        unit.render({inputs.data(), unit.inputChannelCount(), frames_},
                    {outputs.data(), unit.outputChannelCount(), frames_});
    }

  private:
    const std::uint32_t frames_;
    std::minstd_rand random_;
    std::array<std::vector<float>, 4> samples_;
};

struct Cost {
    double elapsed = 0.0;        ///< µs
    std::int64_t processor = 0;  ///< ns
};

template <typename Body>
Cost timed(Body body) {
    const auto processor = threadNanoseconds();
    const auto begin = monotonicNanoseconds();
    body();
    const auto end = monotonicNanoseconds();
    return {static_cast<double>(end - begin) * 1e-3, threadNanoseconds() - processor};
}

/// The processor time of a process, in ns.
std::int64_t processNanoseconds(pid_t process) {
    clockid_t clock{};
    return clock_getcpuclockid(process, &clock) == 0 ? nanosecondsOf(clock) : 0;
}

}  // namespace

std::shared_ptr<LV2LocalAudioUnit> makeLocal(const std::string& uri) {
    auto unit =
        std::make_shared<LV2LocalAudioUnit>(LV2World::shared(), uri, AudioComponentDescription{});
    unit->allocateRenderResources(kRate);
    return unit;
}

std::shared_ptr<BridgedAudioUnit> makeBridged(const std::string& uri) {
    auto unit =
        std::make_shared<BridgedAudioUnit>(LV2World::shared(), uri, AudioComponentDescription{},
                                           stage() / "libexec/orvalo/effect-service");
    unit->allocateRenderResources(kRate);
    return unit;
}

Contenders::Contenders(const std::string& uri)
    : local(makeLocal(uri)), bridged(makeBridged(uri)), service(newestService()) {}

QuantumCosts renderPaced(const Contenders& contenders, std::uint32_t frames, int seconds) {
    QuantumCosts costs;
    const auto late = contenders.bridged->lateQuantumCount();
    std::thread renderer([&] {
        requestRealTimePriority();
        Blocks blocks(frames);
        std::int64_t localProcessor = 0;
        std::int64_t bridgedProcessor = -processNanoseconds(contenders.service);
        const auto period = static_cast<std::int64_t>(frames * 1e9 / kRate);
        const auto quanta = static_cast<int>(seconds * kRate / frames);
        auto next = monotonicNanoseconds();
        for (int quantum = 0; quantum < quanta; ++quantum) {
            next += period;
            const timespec until{next / 1'000'000'000, next % 1'000'000'000};
            clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &until, nullptr);
            Cost local;
            Cost bridged;
            Cost bare;
            constexpr int kContenders = 3;
            for (int turn = 0; turn < kContenders; ++turn) {
                switch ((quantum + turn) % kContenders) {
                    case 0:
                        local = timed([&] { blocks.render(*contenders.local); });
                        break;
                    case 1:
                        bridged = timed([&] { blocks.render(*contenders.bridged); });
                        break;
                    default:
                        bare = timed([&] { contenders.bare->run(); });
                }
            }
            costs.local.push_back(local.elapsed);
            costs.bridged.push_back(bridged.elapsed);
            costs.added.push_back(bridged.elapsed - local.elapsed);
            costs.bare.push_back(bare.elapsed);
            localProcessor += local.processor;
            bridgedProcessor += bridged.processor;
        }
        bridgedProcessor += processNanoseconds(contenders.service);
        costs.localProcessor = inSeconds(localProcessor) / seconds;
        costs.bridgedProcessor = inSeconds(bridgedProcessor) / seconds;
    });
    renderer.join();
    costs.lateCount = contenders.bridged->lateQuantumCount() - late;
    return costs;
}

}  // namespace orvalo::bench
