#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <thread>

#include "platform/foundation/NSError.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

/// Tests a unit by the record that the probe plug-in keeps of its host.
class Probe : public ::testing::Test {
  protected:
    void SetUp() override {
        auto& seen = probeRecord();
        for (auto* count :
             {&seen.instantiations, &seen.cleanups, &seen.activations, &seen.deactivations,
              &seen.runs, &seen.endRuns, &seen.jobs, &seen.answers, &seen.answersOutOfOrder,
              &seen.refusedJobs, &seen.restores, &seen.restoresWithSchedule, &seen.positions,
              &seen.controlCallsDuringRun, &seen.overlappingJobs, &seen.jobsOnRenderThread}) {
            *count = 0;
        }
    }

    static zoo::ProbeRecord& seen() { return probeRecord(); }

    static float rendered(AUAudioUnit& unit) {
        return renderBlocks(unit, {{1.0F}}, {1}, 1).front().front();
    }
};

TEST_F(Probe, ReceivesTheHostsOptionsAndFeatures) {
    const auto unit = makeZooUnit("probe");
    unit->allocateRenderResources(96000.0);
    EXPECT_EQ(seen().rate, 96000.0);
    EXPECT_EQ(seen().rateOption, 96000.0F);
    EXPECT_EQ(seen().minBlockLength, 1);
    EXPECT_EQ(seen().maxBlockLength, 4096);
    EXPECT_EQ(seen().sequenceSize, 65536);
    EXPECT_TRUE(seen().hasBoundedBlockLength);
    EXPECT_EQ(unit->inputChannelCount(), 1U);
    EXPECT_EQ(unit->outputChannelCount(), 1U);
}

TEST_F(Probe, ReceivesANominalBlockLengthWhereAllBlocksHaveThatLength) {
    seen().nominalBlockLength = 0;
    makeZooUnit("probe");
    EXPECT_EQ(seen().nominalBlockLength, 0);
    const LV2UnitStart start{.rendering = {.sampleRate = 44100.0, .frameCount = 512}};
    LV2LocalAudioUnit unit(zooWorld(), "urn:orvalo:zoo:probe", AudioComponentDescription{}, start);
    EXPECT_EQ(seen().nominalBlockLength, 512);
    EXPECT_EQ(seen().maxBlockLength, 4096);
    seen().nominalBlockLength = 0;
    unit.allocateRenderResources(48000.0);
    EXPECT_EQ(seen().nominalBlockLength, 512);
}

TEST_F(Probe, KeepsItsInstanceAtTheSameRate) {
    {
        const auto unit = makeZooUnit("probe");
        unit->allocateRenderResources(48000.0);
        unit->allocateRenderResources(48000.0);
        EXPECT_EQ(seen().instantiations, 1);
        EXPECT_EQ(seen().activations, 1);
    }
    EXPECT_EQ(seen().deactivations, 1);
    EXPECT_EQ(seen().cleanups, 1);
}

TEST_F(Probe, KeepsItsStateAtAnotherRate) {
    const auto unit = makeZooUnit("probe");
    unit->allocateRenderResources(44100.0);
    unit->setCurrentPreset(unit->factoryPresets()[0]);
    setControl(*unit, "gain", 1.75F);
    setControl(*unit, "corner", 11025.0F);
    rendered(*unit);
    seen().secret = 0;
    seen().hasFile = false;
    unit->allocateRenderResources(88200.0);
    EXPECT_EQ(seen().rate, 88200.0);
    EXPECT_EQ(seen().secret, 77);
    EXPECT_TRUE(seen().hasFile);
    EXPECT_EQ(rendered(*unit), 1.75F);
    EXPECT_EQ(seen().corner, 22050.0F);
    EXPECT_EQ(unit->currentPreset()->name, "Another");
}

TEST_F(Probe, RefusesARateThatIsNotPositive) {
    const auto unit = makeZooUnit("probe");
    EXPECT_THROW(unit->allocateRenderResources(0.0), NSError);
    EXPECT_THROW(unit->allocateRenderResources(-1.0), NSError);
    EXPECT_EQ(rendered(*unit), 0.5F) << "the previous instance stays";
}

TEST_F(Probe, StartsWithItsDefaultsAndDefaultState) {
    const auto unit = makeZooUnit("probe");
    EXPECT_EQ(seen().restores, 1);
    EXPECT_EQ(seen().secret, 5);
    EXPECT_EQ(rendered(*unit), 0.5F);
    EXPECT_EQ(seen().corner, 12000.0F) << "a quarter of 48000";
}

TEST_F(Probe, ReceivesTheContextNameAtInstantiationAndLater) {
    const auto unit = makeZooUnit("probe");
    EXPECT_EQ(unit->contextName(), "");
    unit->setContextName("running in distribution host");
    EXPECT_EQ(unit->contextName(), "running in distribution host");
    EXPECT_STREQ(seen().contextName.data(), "running in distribution host");
    unit->allocateRenderResources(44100.0);
    EXPECT_STREQ(seen().firstContextName.data(), "running in distribution host");
}

TEST_F(Probe, KeepsRunningAfterItThrowsAtAnOption) {
    const auto unit = makeZooUnit("probe");
    EXPECT_THROW(unit->setContextName("unheard of"), std::runtime_error);
    const int before = seen().runs;
    rendered(*unit);
    EXPECT_EQ(seen().runs, before + 1);
    unit->setContextName("known");
    EXPECT_STREQ(seen().contextName.data(), "known");
}

TEST_F(Probe, OffersItsPresetsByLabelThenByURI) {
    const auto unit = makeZooUnit("probe");
    std::vector<std::pair<std::int64_t, std::string>> presets;
    for (const auto& preset : unit->factoryPresets()) {
        presets.emplace_back(preset->number, preset->name);
    }
    const std::vector<std::pair<std::int64_t, std::string>> expected{
        {0, "Another"}, {1, "Another"}, {2, "Loud"}};
    EXPECT_EQ(presets, expected);
    EXPECT_EQ(makeZooUnit("probe-safe")->factoryPresets().size(), 1U);
}

TEST_F(Probe, LoadsAPresetByItsNumber) {
    const auto unit = makeZooUnit("probe");
    EXPECT_EQ(unit->currentPreset(), nullptr);
    const auto another = unit->factoryPresets()[0];
    unit->setCurrentPreset(another);
    EXPECT_EQ(unit->currentPreset(), another);
    EXPECT_EQ(rendered(*unit), 3.0F);
    EXPECT_EQ(seen().secret, 77);
    unit->setCurrentPreset(std::make_shared<AUAudioUnitPreset>(2, "any name"));
    EXPECT_EQ(rendered(*unit), 2.0F);
    EXPECT_EQ(unit->currentPreset()->number, 2);
}

TEST_F(Probe, ClearsTheCurrentPresetForAnUnknownOne) {
    const auto unit = makeZooUnit("probe");
    for (const std::int64_t number : {std::int64_t{3}, std::int64_t{-1}}) {
        unit->setCurrentPreset(unit->factoryPresets()[2]);
        unit->setCurrentPreset(std::make_shared<AUAudioUnitPreset>(number, "Loud"));
        EXPECT_EQ(unit->currentPreset(), nullptr);
        EXPECT_EQ(rendered(*unit), 2.0F);
    }
    unit->setCurrentPreset(unit->factoryPresets()[2]);
    unit->setCurrentPreset(nullptr);
    EXPECT_EQ(unit->currentPreset(), nullptr);
    EXPECT_EQ(rendered(*unit), 2.0F);
}

TEST_F(Probe, SendsItsNotesInTimeOrderOverItsPorts) {
    const auto unit = makeZooUnit("probe");
    EXPECT_EQ(unit->MIDIOutputNames(), (std::vector<std::string>{"Notes", "More Notes"}));
    EXPECT_FALSE(unit->MIDIOutputEventBlock());
    std::vector<SentEvent> events;
    collectEvents(*unit, events);
    EXPECT_TRUE(unit->MIDIOutputEventBlock());
    renderBlocks(*unit, noise(1, 100), {100}, 100);
    EXPECT_TRUE(events.empty());
    setControl(*unit, "chatter", 1.0F);
    renderBlocks(*unit, noise(1, 512), {256}, 512);
    const std::vector<SentEvent> expected{
        {100, 0, {0x90, 60, 100}, 3}, {228, 1, {0x90, 61, 100}, 3}, {355, 0, {0x90, 60, 100}, 3},
        {356, 0, {0x90, 60, 100}, 3}, {484, 1, {0x90, 61, 100}, 3}, {611, 0, {0x90, 60, 100}, 3}};
    EXPECT_EQ(events, expected);
    unit->setMIDIOutputEventBlock({});
    renderBlocks(*unit, noise(1, 64), {64}, 64);
    EXPECT_EQ(events.size(), expected.size());
}

TEST_F(Probe, ReceivesOneTimePositionPerInstance) {
    const auto unit = makeZooUnit("probe");
    renderBlocks(*unit, noise(1, 300), {100}, 300);
    EXPECT_EQ(seen().positions, 1);
    EXPECT_EQ(seen().positionFrame, 0);
    EXPECT_EQ(seen().positionSpeed, 1.0F);
    unit->allocateRenderResources(44100.0);
    renderBlocks(*unit, noise(1, 300), {100}, 300);
    EXPECT_EQ(seen().positions, 2);
    EXPECT_EQ(seen().positionFrame, 300);
}

TEST_F(Probe, ReportsItsLatencyAfterTheFirstQuantum) {
    for (const auto* name : {"probe", "probe-safe"}) {
        const auto unit = makeZooUnit(name);
        EXPECT_EQ(unit->latency(), 0U);
        rendered(*unit);
        EXPECT_EQ(unit->latency(), 64U);
    }
}

TEST_F(Probe, ReceivesWorkerResponsesInOrderAndEndRunAfterEachRun) {
    const auto unit = makeZooUnit("probe");
    setControl(*unit, "work", 1.0F);
    const int before = seen().jobs;  // Restoring has done one at once.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (seen().answers < 100 && std::chrono::steady_clock::now() < deadline) {
        renderBlocks(*unit, noise(1, 16), {16}, 16);
        std::this_thread::yield();
    }
    EXPECT_GE(seen().answers, 100);
    EXPECT_GE(seen().jobs - before, 100);
    EXPECT_EQ(seen().answersOutOfOrder, 0);
    EXPECT_EQ(seen().overlappingJobs, 0);
    EXPECT_EQ(seen().jobsOnRenderThread, 0);
    EXPECT_EQ(seen().endRuns, seen().runs);
}

TEST_F(Probe, CanUseTheWorkerWhileRestoringState) {
    const auto unit = makeZooUnit("probe");
    EXPECT_EQ(seen().restoresWithSchedule, 1);
    EXPECT_EQ(seen().jobs, 1) << "done at once, in the restoring call";
}

TEST_F(Probe, HasNoPluginUIWithoutAProvider) {
    const auto unit = makeZooUnit("probe");
    int calls = 0;
    unit->requestViewController([&calls](const std::shared_ptr<UIViewController>& controller) {
        EXPECT_EQ(controller, nullptr);
        ++calls;
    });
    EXPECT_EQ(calls, 1);
}

TEST_F(Probe, DoesNotRunForZeroFrames) {
    const auto unit = makeZooUnit("probe");
    unit->render({nullptr, 1, 0}, {nullptr, 1, 0});
    EXPECT_EQ(seen().runs, 0);
}

}  // namespace
