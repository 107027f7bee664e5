#include "effect/ui/PresetFiles.h"

#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <fstream>

#include "tests/effect/EffectState.h"
#include "tests/testing/FileBytes.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;
using orvalo::testing::EffectState;
using orvalo::testing::TemporaryFolder;

namespace fs = std::filesystem;

const std::size_t factoryCount = orvalo::testing::EffectWorld::shared().presets().size();

/// The presets in a home folder of their own.
class PresetFilesTest : public ::testing::Test {
  protected:
    PresetFilesTest() {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread.
        setenv("HOME", home.path().c_str(), 1);
        files.emplace(EFFECT_BUNDLE, nullptr);
    }

    fs::path user() const { return home.path() / ".lv2"; }
    std::map<std::string, EffectState::Values> inHosts() const {
        return EffectState::presets(user().string() + ":" + EFFECT_LV2_PATH);
    }
    /// The user's presets.
    std::map<std::string, Preset> read() {
        std::map<std::string, Preset> result;
        for (const auto& preset : files->read()) {
            if (preset.isUser) {
                EXPECT_TRUE(result.emplace(preset.name, preset).second) << preset.name;
            }
        }
        return result;
    }
    std::string save(const Preset& preset) { return files->save(preset, preset.name); }
    std::vector<std::string> folders() const {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(user())) {
            names.push_back(entry.path().filename());
        }
        std::sort(names.begin(), names.end());
        return names;
    }

    static Preset preset(const std::string& name, float start = 0.1F) {
        Preset preset{.name = name, .values = {}, .description = "A \"test\"", .isUser = true};
        for (std::size_t i = 1; i < parameterCount; ++i) {
            const auto& range = parameterRanges.at(i);
            preset.values.emplace_back(
                static_cast<Parameter>(i),
                range.clamp(range.minimum + start * (range.maximum - range.minimum)));
        }
        return preset;
    }
    static EffectState::Values valuesOf(const Preset& preset) {
        EffectState::Values values;
        for (const auto& [parameter, value] : preset.values) {
            values[parameterRanges.at(static_cast<std::size_t>(parameter)).symbol] = value;
        }
        return values;
    }

    TemporaryFolder home;
    std::optional<PresetFiles> files;
};

using Names = std::vector<std::string>;

TEST_F(PresetFilesTest, FactoryPresetsComeFirstWithTheirDescriptions) {
    save(preset("A"));
    const auto all = files->read();
    ASSERT_EQ(all.size(), factoryCount + 1);
    EXPECT_EQ(all.front().name, "Acoustic Sparkle");
    EXPECT_EQ(all.back().name, "A");
    for (const auto& one : all) {
        EXPECT_NE(one.description, "") << one.name;
        EXPECT_EQ(one.isUser, one.name == "A");
    }
}

TEST_F(PresetFilesTest, WhatIsSavedIsThereInEveryHost) {
    const auto before = inHosts().size();
    const Preset saved = preset("B\u00e4sse \\ \"mine\"", 1.0F / 3.0F);
    EXPECT_EQ(save(saved), "");
    auto presets = inHosts();
    EXPECT_EQ(presets.size(), before + 1);
    EXPECT_EQ(presets[saved.name], valuesOf(saved));
    EXPECT_EQ(read()[saved.name], saved);
}

TEST_F(PresetFilesTest, BothPlugInsOfTheBundleShareThePresets) {
    save(preset("From the UI"));
    EffectState::save({{"mix", 3.0F}}, "From a host", user() / "x.lv2", "x.ttl",
                      orvalo::testing::EffectWorld::shared().sideChainPlugin());
    const auto inSideChain = EffectState::presets(user().string() + ":" + EFFECT_LV2_PATH,
                                                  "urn:tessaly:orvalo:sidechain");
    EXPECT_TRUE(inHosts().contains("From the UI"));
    EXPECT_TRUE(inSideChain.contains("From the UI"));
    EXPECT_TRUE(inSideChain.contains("From a host"));
    const auto listed = read();
    EXPECT_TRUE(listed.contains("From the UI"));
    EXPECT_TRUE(listed.contains("From a host"));
}

TEST_F(PresetFilesTest, WhatOthersSaveIsListed) {
    EffectState::Values values{{"enabled", 0.0F}};
    for (const auto& range : parameterRanges) {
        values.try_emplace(range.symbol, range.maximum);
    }
    EffectState::save(values, "From jalv", user() / "Orvalo_From_jalv.preset.lv2", "From_jalv.ttl");
    const auto presets = read();
    ASSERT_TRUE(presets.contains("From jalv"));
    const Preset& preset = presets.at("From jalv");
    // It does not switch the effect off.
    values.erase("enabled");
    EXPECT_EQ(valuesOf(preset), values);
}

TEST_F(PresetFilesTest, PresetOfAnEarlierVersionSetsLaterControlsToTheirDefaults) {
    EffectState::save({{"mix", 3.0F}, {"knee", 2.0F}}, "Old", user() / "x.lv2", "x.ttl");
    const auto values = valuesOf(read()["Old"]);
    EXPECT_EQ(values.size(), parameterCount - 1);
    for (const auto& [symbol, value] : values) {
        const auto* const range =
            std::ranges::find(parameterRanges, symbol, &ParameterRange::symbol);
        const float wanted = symbol == "mix" ? 3.0F : symbol == "knee" ? 2.0F : range->standard;
        EXPECT_EQ(value, wanted) << symbol;
    }
}

TEST_F(PresetFilesTest, SavingReplacesThePresetOfThatName) {
    save(preset("Same", 0.1F));
    EXPECT_EQ(save(preset("Same", 0.7F)), "");
    EXPECT_EQ(folders(), Names{"orvalo-Same.preset.lv2"});
    EXPECT_EQ(read()["Same"], preset("Same", 0.7F));
    // Also one of another host's.
    EffectState::save({{"mix", 3.0F}}, "Theirs", user() / "x.lv2", "x.ttl");
    EXPECT_EQ(save(preset("Theirs")), "");
    EXPECT_EQ(folders(), (Names{"orvalo-Same.preset.lv2", "x.lv2"}));
    EXPECT_EQ(inHosts()["Theirs"], valuesOf(preset("Theirs")));
    EXPECT_EQ(inHosts().size(), factoryCount + 2);
    // Also where there are two.
    EffectState::save({{"mix", 3.0F}}, "Same", user() / "y.lv2", "y.ttl");
    EXPECT_EQ(save(preset("Same", 0.5F)), "");
    EXPECT_EQ(folders(), (Names{"orvalo-Same.preset.lv2", "x.lv2"}));
    EXPECT_EQ(read()["Same"], preset("Same", 0.5F));
}

TEST_F(PresetFilesTest, RenamingKeepsTheBundle) {
    save(preset("Old"));
    EXPECT_EQ(files->save(preset("New"), "Old"), "");
    EXPECT_EQ(folders(), Names{"orvalo-Old.preset.lv2"});
    EXPECT_EQ(read().size(), 1U);
    EXPECT_EQ(inHosts()["New"], valuesOf(preset("New")));
    EXPECT_EQ(save(preset("Old", 0.9F)), "");
    EXPECT_EQ(folders(), (Names{"orvalo-Old-2.preset.lv2", "orvalo-Old.preset.lv2"}));
    EXPECT_EQ(read()["New"], preset("New"));
    EXPECT_EQ(read()["Old"], preset("Old", 0.9F));
}

TEST_F(PresetFilesTest, NamesThatLookAlikeHaveFoldersOfTheirOwn) {
    for (const char* name : {"a b", "a/b", "../../b", "\u00e4"}) {
        EXPECT_EQ(save(preset(name)), "") << name;
    }
    EXPECT_EQ(folders(), (Names{"orvalo-__.preset.lv2", "orvalo-______b.preset.lv2",
                                "orvalo-a_b-2.preset.lv2", "orvalo-a_b.preset.lv2"}));
    EXPECT_EQ(read().size(), 4U);
    EXPECT_EQ(files->remove("a b"), "");
    EXPECT_FALSE(read().contains("a b"));
    EXPECT_TRUE(read().contains("a/b"));
}

TEST_F(PresetFilesTest, RemovesItsOwnAndThoseOfOthers) {
    save(preset("Mine"));
    EffectState::save({{"mix", 3.0F}}, "Theirs", user() / "Theirs.preset.lv2", "Theirs.ttl");
    EXPECT_EQ(files->remove("Mine"), "");
    EXPECT_EQ(files->remove("Theirs"), "");
    EXPECT_EQ(folders(), Names{});
    EXPECT_EQ(inHosts().size(), factoryCount);
}

TEST_F(PresetFilesTest, BundleWithMoreThanOnePresetIsShownAndKept) {
    EffectState::save({{"mix", 3.0F}}, "One", user() / "many.lv2", "one.ttl");
    EffectState::save({{"mix", 4.0F}}, "Two", user() / "many.lv2", "two.ttl");
    EXPECT_TRUE(read().empty());
    EXPECT_EQ(files->read().size(), factoryCount + 2);
    EXPECT_EQ(files->remove("One"), "");
    EXPECT_EQ(inHosts().size(), factoryCount + 2);
}

TEST_F(PresetFilesTest, OtherBundlesAreLeftAlone) {
    fs::create_directories(user() / "orvalo-Taken.preset.lv2");
    std::ofstream(user() / "orvalo-Taken.preset.lv2/manifest.ttl") << "nothing";
    fs::create_directories(user() / "broken.lv2");
    std::ofstream(user() / "broken.lv2/manifest.ttl") << "<urn:tessaly:orvalo> [[[";
    EXPECT_EQ(save(preset("Taken")), "");
    EXPECT_EQ(folders(),
              (Names{"broken.lv2", "orvalo-Taken-2.preset.lv2", "orvalo-Taken.preset.lv2"}));
    EXPECT_EQ(read().size(), 1U);
}

TEST_F(PresetFilesTest, FolderInPlaceOfAManifestIsLeftOut) {
    save(preset("A"));
    fs::create_directories(user() / "x.lv2/manifest.ttl");
    EXPECT_EQ(read().size(), 1U);
}

TEST_F(PresetFilesTest, TextsOfOthersBecomePlainAndValuesAreInRange) {
    EffectState::save({{"mix", 1000.0F}, {"knee", -1.0F}}, "Their\nname", user() / "x.lv2",
                      "x.ttl");
    auto presets = read();
    ASSERT_TRUE(presets.contains("Their name"));
    auto values = valuesOf(presets["Their name"]);
    EXPECT_EQ(values["mix"], 100.0F);
    EXPECT_EQ(values["knee"], 0.0F);
    std::ofstream(user() / "x.lv2/x.ttl", std::ios::app)
        << "<> <http://www.w3.org/2000/01/rdf-schema#comment> \"\"\"one\ttwo\nthree\"\"\" .\n";
    EXPECT_EQ(read()["Their name"].description, "one two three");
}

TEST_F(PresetFilesTest, TextsThatAreNotUtf8AreLeftOut) {
    save(preset("Mine"));
    const fs::path file = user() / "orvalo-Mine.preset.lv2/preset.ttl";
    const auto text = orvalo::testing::bytesOf(file);
    const auto readWith = [&](const std::string& what, const char* bytes) {
        std::string changed = text;
        changed.replace(changed.find(what), what.size(), bytes);
        orvalo::testing::writeBytes(file, changed);
        return read();
    };
    // A surrogate, an overlong form, and a number beyond Unicode.
    for (const char* bytes : {"\xED\xA0\x80", "\xC0\x80", "\xF4\x90\x80\x80"}) {
        EXPECT_TRUE(readWith("Mine", bytes).empty());
        EXPECT_EQ(readWith("test", bytes)["Mine"].description, "");
    }
    EXPECT_EQ(readWith("Mine", "\xF4\x8F\xBF\xBF").size(), 1U);
}

TEST_F(PresetFilesTest, SaysWhyItCannotSave) {
    std::ofstream(user()) << "a file where the folder should be";
    EXPECT_EQ(save(preset("A")), "Not saved: Not a directory");
    EXPECT_EQ(files->remove("A"), "");
}

TEST_F(PresetFilesTest, FailedSavingLeavesNothing) {
    save(preset("Old"));
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit none{0, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &none);
    const auto saved = save(preset("New"));
    const auto renamed = files->save(preset("Renamed"), "Old");
    setrlimit(RLIMIT_FSIZE, &before);
    static_cast<void>(std::signal(SIGXFSZ, handler));
    EXPECT_EQ(saved, "Not saved: File too large");
    EXPECT_EQ(renamed, "Not saved: File too large");
    EXPECT_EQ(folders(), Names{"orvalo-Old.preset.lv2"});
    EXPECT_EQ(read()["Old"], preset("Old"));
}

/// A host that writes what it is asked to, when the test says so.
struct SlowHost {
    struct Request {
        std::string folder;
        std::optional<Preset> preset;
    };

    void work() {
        for (const auto& request : std::exchange(requests, {})) {
            if (request.preset) {
                writeBundle(folder / request.folder, *request.preset);
            } else {
                removeBundle(folder / request.folder);
            }
        }
    }
    static SlowHost& self(void* handle) { return *static_cast<SlowHost*>(handle); }

    fs::path folder;
    std::vector<Request> requests;
    PresetWriter writer{this,
                        [](void* handle, const char* name, const char* label, const char* comment,
                           std::uint32_t count, const char* const* symbols, const float* values) {
                            Preset preset{.name = label, .values = {}, .description = comment};
                            for (std::uint32_t i = 0; i < count; ++i) {
                                for (std::size_t j = 0; j < parameterCount; ++j) {
                                    if (std::string(parameterRanges.at(j).symbol) == symbols[i]) {
                                        preset.values.emplace_back(static_cast<Parameter>(j),
                                                                   values[i]);
                                    }
                                }
                            }
                            self(handle).requests.push_back({name, preset});
                            return 0;
                        },
                        [](void* handle, const char* name) {
                            self(handle).requests.push_back({name, std::nullopt});
                            return 0;
                        }};
};

TEST_F(PresetFilesTest, HostThatWritesMayTakeItsTime) {
    SlowHost host{.folder = user(), .requests = {}};
    files.emplace(EFFECT_BUNDLE, &host.writer);
    EXPECT_EQ(save(preset("Mine")), "");
    ASSERT_EQ(host.requests.size(), 1U);
    EXPECT_EQ(host.requests.front().folder, "orvalo-Mine.preset.lv2");
    EXPECT_FALSE(fs::exists(user()));
    EXPECT_EQ(read()["Mine"], preset("Mine"));
    EXPECT_TRUE(files->isWaiting());
    EXPECT_EQ(files->check(100.0), "");
    EXPECT_TRUE(files->isWaiting());
    host.work();
    EXPECT_EQ(files->check(101.0), "");
    EXPECT_FALSE(files->isWaiting());
    EXPECT_EQ(read()["Mine"], preset("Mine"));
    EXPECT_EQ(files->remove("Mine"), "");
    EXPECT_TRUE(read().empty());
    host.work();
    EXPECT_EQ(files->check(102.0), "");
    EXPECT_FALSE(files->isWaiting());
    EXPECT_EQ(folders(), Names{});
}

TEST_F(PresetFilesTest, RequestsThatOvertakeTheHostCount) {
    SlowHost host{.folder = user(), .requests = {}};
    files.emplace(EFFECT_BUNDLE, &host.writer);
    save(preset("A b", 0.1F));
    save(preset("A/b", 0.2F));
    save(preset("A b", 0.3F));
    files->remove("A/b");
    EXPECT_EQ(read().size(), 1U);
    host.work();
    EXPECT_EQ(files->check(1.0), "");
    EXPECT_FALSE(files->isWaiting());
    EXPECT_EQ(read()["A b"], preset("A b", 0.3F));
    EXPECT_EQ(folders(), Names{"orvalo-A_b.preset.lv2"});
}

TEST_F(PresetFilesTest, RenamingMayBeUndoneBeforeTheHostHasWritten) {
    SlowHost host{.folder = user(), .requests = {}};
    save(preset("Old"));
    files.emplace(EFFECT_BUNDLE, &host.writer);
    EXPECT_EQ(files->save(preset("New"), "Old"), "");
    EXPECT_EQ(read().size(), 1U);
    EXPECT_TRUE(read().contains("New"));
    EXPECT_EQ(files->save(preset("Old"), "New"), "");
    EXPECT_EQ(read().size(), 1U);
    host.work();
    EXPECT_EQ(files->check(1.0), "");
    EXPECT_FALSE(files->isWaiting());
    EXPECT_EQ(read().size(), 1U);
    EXPECT_EQ(read()["Old"], preset("Old"));
}

TEST_F(PresetFilesTest, DeletingMayBeUndoneBeforeTheHostHasRemoved) {
    SlowHost host{.folder = user(), .requests = {}};
    save(preset("Mine"));
    files.emplace(EFFECT_BUNDLE, &host.writer);
    // The host may have removed the folder without being checked yet, or not.
    for (const bool hasWorked : {true, false}) {
        EXPECT_EQ(files->remove("Mine"), "");
        EXPECT_TRUE(read().empty());
        if (hasWorked) {
            host.work();
        }
        EXPECT_EQ(save(preset("Mine")), "");
        host.work();
        EXPECT_EQ(files->check(1.0), "");
        EXPECT_FALSE(files->isWaiting());
        EXPECT_EQ(folders(), Names{"orvalo-Mine.preset.lv2"});
        EXPECT_EQ(read()["Mine"], preset("Mine"));
    }
}

TEST_F(PresetFilesTest, RenamingThatTheHostRefusesLosesNothing) {
    SlowHost host{.folder = user(), .requests = {}};
    save(preset("Old"));
    files.emplace(EFFECT_BUNDLE, &host.writer);
    EXPECT_EQ(files->save(preset("New"), "Old"), "");
    std::erase_if(host.requests, [](const auto& request) { return request.preset.has_value(); });
    host.work();
    EXPECT_EQ(files->check(1.0), "");
    EXPECT_EQ(files->check(7.0), "\"New\" is not saved: the host did not do it");
    EXPECT_EQ(read().size(), 1U);
    EXPECT_EQ(read()["Old"], preset("Old"));
}

TEST_F(PresetFilesTest, HostThatDoesNotWriteIsSaid) {
    SlowHost host{.folder = user(), .requests = {}};
    files.emplace(EFFECT_BUNDLE, &host.writer);
    save(preset("Mine"));
    EXPECT_EQ(files->check(10.0), "");
    EXPECT_EQ(files->check(15.0), "");
    EXPECT_EQ(files->check(15.1), "\"Mine\" is not saved: the host did not do it");
    EXPECT_FALSE(files->isWaiting());
    EXPECT_TRUE(read().empty());
}

}  // namespace
