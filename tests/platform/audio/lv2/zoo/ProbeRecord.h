#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace orvalo::zoo {

/// The probe's record of its host's calls. One per process.
struct ProbeRecord {
    std::atomic<int> instantiations{0};
    std::atomic<int> cleanups{0};
    std::atomic<int> activations{0};
    std::atomic<int> deactivations{0};
    std::atomic<int> runs{0};
    std::atomic<int> endRuns{0};
    std::atomic<int> jobs{0};
    std::atomic<int> answers{0};
    std::atomic<int> answersOutOfOrder{0};
    std::atomic<int> refusedJobs{0};
    std::atomic<int> restores{0};
    std::atomic<int> restoresWithSchedule{0};
    std::atomic<int> defaultStates{0};
    std::atomic<int> positions{0};
    std::atomic<std::int64_t> positionFrame{-1};
    std::atomic<float> positionSpeed{0.0F};

    // Calls that LV2 forbids.
    std::atomic<int> controlCallsDuringRun{0};
    std::atomic<int> overlappingJobs{0};
    std::atomic<int> jobsOnRenderThread{0};

    // Of the last instance.
    std::atomic<double> rate{0.0};
    std::atomic<float> rateOption{0.0F};
    std::atomic<int> minBlockLength{0};
    std::atomic<int> maxBlockLength{0};
    std::atomic<int> nominalBlockLength{0};
    std::atomic<int> sequenceSize{0};
    std::atomic<bool> hasBoundedBlockLength{false};
    std::atomic<float> corner{0.0F};
    std::atomic<int> secret{0};
    std::atomic<bool> hasFile{false};
    std::array<char, 256> firstContextName{};
    std::array<char, 256> contextName{};
};

/// Exported by the probe's library as "probeRecord".
using ProbeRecordFunction = ProbeRecord* (*)();

}  // namespace orvalo::zoo
