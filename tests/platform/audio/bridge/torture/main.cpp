// bridge_torture SECONDS SEED: renders through an effect whose service is killed and stopped at
// random moments, while presets are loaded, rates change and the effect is controlled. Ends with
// status 1 and a line when the output is not wet, dry or the fade between the two, or when a
// resource is left behind.

#include <glib.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>

#include "tests/platform/audio/bridge/host/BridgedEffect.h"
#include "tests/platform/audio/bridge/host/Leftovers.h"
#include "tests/platform/audio/bridge/host/Transcript.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using Clock = std::chrono::steady_clock;

BridgeLimits limitsOfTorture() {
    auto limits = patientLimits();
    limits.hang = std::chrono::milliseconds(300) * BridgeLimits::kSlowness;
    limits.deaths = 1000000;
    return limits;
}

/// Controls the effect and kills its services, on a separate thread.
class Tormentor {
  public:
    Tormentor(BridgedAudioUnit& unit, unsigned seed) : unit_(unit), random_(seed) {}

    void run() {
        while (!isOver) {
            std::this_thread::sleep_for(std::chrono::microseconds(random(20000)));
            switch (random(6)) {
                case 0:
                case 1:
                    end();
                    break;
                case 2:
                    loadPreset(unit_, "Once");
                    ++deaths;
                    break;
                case 3:
                    unit_.setMIDIOutputEventBlock([](auto, auto, auto, auto) { return 0; });
                    break;
                default:
                    unit_.setContextName("context " + std::to_string(random(1000)));
            }
            ++changes;
        }
    }

    std::atomic<bool> isOver{false};
    int deaths = 0;
    int changes = 0;

  private:
    unsigned random(unsigned below) { return static_cast<unsigned>(random_() % below); }

    void end() {
        constexpr std::array kSignals{SIGKILL, SIGSEGV, SIGSTOP, SIGABRT, SIGTERM};
        for (const auto process : services()) {
            kill(process, kSignals.at(random(kSignals.size())));
            ++deaths;
        }
    }

    BridgedAudioUnit& unit_;
    std::mt19937 random_;
};

int torture(std::chrono::seconds duration, unsigned seed) {
    const auto before = Leftovers::now();
    Transcript transcript;
    int deaths = 0;
    int changes = 0;
    {
        const auto unit =
            makeBridged(misbehavingWorld(), "urn:orvalo:misbehaving:segv", limitsOfTorture());
        unit->allocateRenderResources(48000.0);
        Tormentor tormentor(*unit, seed);
        std::thread thread([&tormentor] { tormentor.run(); });
        auto fed = feed(*unit);
        const auto until = Clock::now() + duration;
        for (int quantum = 1; Clock::now() < until; ++quantum) {
            transcript.add(fed.next());
            if (quantum % 500 == 0) {
                // Between two quanta, as the engine does when connections change.
                unit->allocateRenderResources(quantum % 1000 == 0 ? 48000.0 : 44100.0);
            }
        }
        tormentor.isOver = true;
        thread.join();
        deaths = tormentor.deaths;
        changes = tormentor.changes;
    }
    const auto after = Leftovers::now();
    std::cout << transcript.kinds().size() << " quanta, " << deaths << " ends of " << changes
              << " changes: " << transcript.count(Transcript::Kind::wet) << " wet, "
              << transcript.count(Transcript::Kind::bare) << " bare, "
              << transcript.count(Transcript::Kind::toDry) << " to dry, "
              << transcript.count(Transcript::Kind::dry) << " dry, "
              << transcript.count(Transcript::Kind::toWet) << " to wet, "
              << transcript.count(Transcript::Kind::other) << " other" << std::endl;
    if (transcript.count(Transcript::Kind::other) > 0) {
        std::cout << "A quantum was neither wet nor dry nor a fade." << std::endl;
        return EXIT_FAILURE;
    }
    if (!(after == before)) {
        std::cout << "Left behind: " << after << "; before: " << before << std::endl;
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "bridge_torture SECONDS SEED" << std::endl;
        return 2;
    }
    g_log_writer_default_set_use_stderr(TRUE);
    return torture(std::chrono::seconds(std::atoi(argv[1])),
                   static_cast<unsigned>(std::atoi(argv[2])));
}
