#include <gtest/gtest.h>

#include <string>

#include "platform/audio/lv2/LV2World.h"
#include "platform/foundation/NSError.h"
#include "tests/platform/audio/lv2/BlockRunner.h"
#include "tests/platform/audio/lv2/Zoo.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

/// The error of makeZooUnit(name), without the plug-in's name in front.
std::string refusal(const std::string& name) {
    try {
        makeZooUnit(name);
    } catch (const NSError& error) {
        EXPECT_EQ(error.domain(), "LV2");
        const std::string start = "The plug-in <urn:orvalo:zoo:" + name + "> cannot be used: ";
        const auto& text = error.localizedDescription();
        EXPECT_EQ(text.substr(0, start.size()), start);
        return text.substr(std::min(start.size(), text.size()));
    }
    return "taken";
}

std::string library(const std::string& name) {
    return zooFolder() + "/" + name + ".lv2/";
}

TEST(Zoo, NamesTheUnsupportedFeatureOrOption) {
    EXPECT_EQ(refusal("unknown-feature"),
              "it requires the feature <urn:orvalo:zoo#flying>, which is not offered.");
    EXPECT_EQ(refusal("fixed-block"),
              "it requires the feature <http://lv2plug.in/ns/ext/buf-size#fixedBlockLength>, "
              "which is not offered.");
    EXPECT_EQ(refusal("unknown-option"),
              "it requires the option <urn:orvalo:zoo#colour>, which is not offered.");
}

TEST(Zoo, NamesTheFaultOfALibrary) {
    EXPECT_EQ(refusal("no-library"), "its data name no library.");
    EXPECT_EQ(refusal("missing-library"),
              "its library " + library("missing-library") + "gone.so is missing.");
    EXPECT_EQ(refusal("broken-library"), "its library does not load (" + library("broken-library") +
                                             "broken.so: file too short).");
    EXPECT_EQ(refusal("no-descriptor"), "its library " + library("no-descriptor") +
                                            "no-descriptor.so has no lv2_descriptor.");
}

TEST(Zoo, ReportsAFailedInstantiation) {
    EXPECT_EQ(refusal("failing"), "it refuses to be instantiated.");
    EXPECT_EQ(refusal("other-plugin"), "its library does not hold it.");
}

TEST(Zoo, NamesTheUnsupportedPort) {
    EXPECT_EQ(refusal("no-ports"), "it has no ports.");
    EXPECT_EQ(refusal("event-port"), "its port \"old\" is of a kind that is not supported.");
    EXPECT_EQ(refusal("no-direction"), "its port \"lost\" is of a kind that is not supported.");
    EXPECT_EQ(refusal("far-port"), "its ports are not numbered from 0 on without a gap.");
    EXPECT_EQ(refusal("twin-ports"), "its ports are not numbered from 0 on without a gap.");
    EXPECT_EQ(refusal("many-channels"), "it has 33 audio outputs, more than 32.");
}

TEST(Zoo, DoesNotFindAPluginOfABrokenManifest) {
    EXPECT_EQ(refusal("bad-syntax"), "it is not installed.");
    EXPECT_EQ(refusal("nobody"), "it is not installed.");
}

TEST(Zoo, RunsWithTheLargestBufferWhenItWishesALargerOne) {
    const auto unit = makeZooUnit("huge-buffer");
    EXPECT_EQ(unit->data().ports[2].bufferSize, 16777216U);
    EXPECT_EQ(unit->data().ports[3].bufferSize, 16777216U);
    EXPECT_EQ(renderBlocks(*unit, {{1.0F}}, {1}, 1), (Channels{{0.5F}}));
}

TEST(Zoo, SilencesSamplesThatAreNoFiniteNumbersAndSaysSoOnce) {
    const CapturedOutput error(2);
    {
        const auto unit = makeZooUnit("numberless");
        const auto input = noise(1, 10000);
        auto expected = input;
        for (std::size_t frame = 0; frame < 10000; ++frame) {
            if ((frame + 1) % 7 == 0 || (frame + 1) % 11 == 0) {
                expected[0][frame] = 0.0F;
            }
        }
        EXPECT_EQ(renderBlocks(*unit, input, {64, 1, 4096, 100}, 10000), expected);
        unit->allocateRenderResources(44100.0);
        EXPECT_EQ(renderBlocks(*unit, input, {64, 1, 4096, 100}, 10000), expected);
    }
    std::size_t count = 0;
    for (const auto& line : error.lines()) {
        count += line.ends_with(
                     "<urn:orvalo:zoo:numberless>: it delivers samples that are no "
                     "finite numbers; they are silenced")
                     ? 1
                     : 0;
    }
    EXPECT_EQ(count, 1U) << error.text();
}

/// The factor that the deferred plug-in has applied.
float factor(LV2LocalAudioUnit& unit) {
    return renderBlocks(unit, {{1.0F}}, {1}, 1)[0][0];
}

TEST(Zoo, KeepsADefaultStateThatIsTakenUpInTheFirstRun) {
    const auto unit = makeZooUnit("deferred");
    unit->allocateRenderResources(44100.0);
    unit->allocateRenderResources(96000.0);
    EXPECT_EQ(factor(*unit), 0.5F);
    // The saved state of the instance that has run.
    unit->allocateRenderResources(44100.0);
    unit->allocateRenderResources(22050.0);
    EXPECT_EQ(factor(*unit), 0.5F);
}

TEST(Zoo, KeepsAPresetAndLaterControlValuesBeforeTheFirstRun) {
    const auto unit = makeZooUnit("deferred");
    unit->setCurrentPreset(unit->factoryPresets()[0]);
    setControl(*unit, "gain", 2.0F);
    unit->allocateRenderResources(44100.0);
    EXPECT_EQ(factor(*unit), 0.5F) << "a quarter, twice";
}

TEST(Zoo, KeepsAStateOfAnEarlierUnitThatIsTakenUpInTheFirstRun) {
    LV2StateProperties state;
    {
        const auto unit = makeZooUnit("deferred");
        unit->setCurrentPreset(unit->factoryPresets()[0]);
        EXPECT_FALSE(unit->hasRun());
        EXPECT_EQ(factor(*unit), 0.25F);
        EXPECT_TRUE(unit->hasRun());
        state = unit->stateProperties();
    }
    LV2LocalAudioUnit next(zooWorld(), "urn:orvalo:zoo:deferred", AudioComponentDescription{},
                           {.state = state});
    next.allocateRenderResources(44100.0);
    EXPECT_EQ(factor(next), 0.25F);
}

TEST(Zoo, SurvivesAFloodOfWorkRequests) {
    const auto unit = makeZooUnit("worker");
    for (int block = 0; block < 200; ++block) {
        const auto out = renderBlocks(*unit, noise(1, 8), {8}, 8);
        EXPECT_LE(out[0][0], 8.0F) << "a request larger than the ring is accepted";
        ASSERT_EQ(out[0][7], 0.0F) << "responses are damaged";
    }
}

/// The events of one quantum of 16 frames from the liar plug-in in a mode.
std::vector<SentEvent> lies(float mode) {
    const auto unit = makeZooUnit("liar");
    setControl(*unit, "mode", mode);
    std::vector<SentEvent> events;
    collectEvents(*unit, events);
    const auto input = noise(1, 16);
    EXPECT_EQ(renderBlocks(*unit, input, {16}, 16), input);
    EXPECT_EQ(unit->latency(), 0U) << "an invalid latency counts";
    return events;
}

TEST(Zoo, PadsShortMessagesAndKeepsLongOnesWhole) {
    const std::vector<SentEvent> expected{{1, 0, {0xF8, 0, 0}, 1},
                                          {2, 0, {0xC0, 7, 0}, 2},
                                          {3, 0, {0xF0, 1, 2, 3, 4, 5, 6, 7, 8, 0xF7}, 10}};
    EXPECT_EQ(lies(0), expected);
}

TEST(Zoo, ClampsEventFramesToTheQuantumInOrder) {
    const std::vector<SentEvent> expected{{9, 0, {0x90, 1, 1}, 3},
                                          {9, 0, {0x90, 2, 1}, 3},
                                          {9, 0, {0x90, 3, 1}, 3},
                                          {15, 0, {0x90, 4, 1}, 3},
                                          {15, 0, {0x90, 5, 1}, 3}};
    EXPECT_EQ(lies(1), expected);
}

TEST(Zoo, ReadsNothingBeyondTheBufferOrTheEvent) {
    const std::vector<SentEvent> one{{0, 0, {0x90, 1, 1}, 3}};
    EXPECT_EQ(lies(2), one) << "a sequence larger than its buffer";
    EXPECT_EQ(lies(3), one) << "an event larger than its sequence";
    EXPECT_TRUE(lies(4).empty()) << "a sequence smaller than its head";
    EXPECT_TRUE(lies(5).empty()) << "no sequence";
    EXPECT_TRUE(lies(6).empty()) << "times in beats";
}

TEST(Zoo, ListsPluginsWithCodesEvenIfTheyCannotBeLoaded) {
    std::vector<std::string> uris;
    for (const auto& component : zooWorld().components()) {
        uris.push_back(component->uri.substr(std::string("urn:orvalo:zoo:").size()));
    }
    const std::vector<std::string> expected{
        "broken-library",  "event-port",     "failing",      "far-port",
        "fixed-block",     "huge-buffer",    "liar",         "many-channels",
        "missing-library", "no-descriptor",  "no-direction", "no-library",
        "no-ports",        "other-plugin",   "probe",        "twin-ports",
        "unknown-feature", "unknown-option", "worker"};
    EXPECT_EQ(uris, expected);
}

}  // namespace
