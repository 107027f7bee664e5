#include "platform/audio/lv2/UserPresets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>

#include "platform/audio/lv2/LV2Bundle.h"
#include "platform/foundation/NSError.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using orvalo::testing::TemporaryFolder;

namespace fs = std::filesystem;

constexpr const char* kPlugin = "urn:test:plugin";

/// Presets of a plug-in with two control inputs, 1 and 2, in an empty home.
class UserPresetsTest : public ::testing::Test {
  protected:
    UserPresetsTest() {
        const auto port = [](std::uint32_t index, const char* symbol, LV2PortKind kind,
                             bool isInput) {
            LV2Port result;
            result.index = index;
            result.symbol = symbol;
            result.kind = kind;
            result.isInput = isInput;
            return result;
        };
        ports_ = {port(0, "in", LV2PortKind::audio, true),
                  port(1, "gain", LV2PortKind::control, true),
                  port(2, "mix", LV2PortKind::control, true),
                  port(3, "meter", LV2PortKind::control, false)};
        fs::remove_all(home() / ".lv2");
    }

    /// GLib asks for the home folder once in a program.
    static const fs::path& home() {
        static const TemporaryFolder folder;
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread.
        static const int isSet = setenv("HOME", folder.path().c_str(), 1);
        EXPECT_EQ(isSet, 0);
        return folder.path();
    }
    static fs::path bundle(const std::string& name) { return home() / ".lv2" / name; }
    static UserPreset preset(const std::string& folder = "a.preset.lv2") {
        return {.folder = folder, .label = "A", .comment = "", .values = {{1, 0.1F}, {2, -3.0F}}};
    }
    static std::string read(const fs::path& file) {
        std::ifstream stream(file);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
    static void write(const fs::path& file, const std::string& text) {
        fs::create_directories(file.parent_path());
        std::ofstream(file) << text;
    }
    std::string refusalOf(const UserPreset& preset) const {
        try {
            writeUserPreset(kPlugin, ports_, preset);
        } catch (const NSError& error) {
            return error.what();
        }
        return "";
    }
    static std::string refusalOfRemoving(const std::string& folder) {
        try {
            removeUserPreset(kPlugin, folder);
        } catch (const NSError& error) {
            return error.what();
        }
        return "";
    }
    static std::size_t count() {
        std::error_code ignored;
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(home() / ".lv2", ignored), {}));
    }

    std::vector<LV2Port> ports_;
};

TEST_F(UserPresetsTest, WritesWhatLilvSaves) {
    auto wanted = preset();
    wanted.label = R"(Say "B\u00e4sse" \)";
    wanted.comment = "Low";
    writeUserPreset(kPlugin, ports_, wanted);
    const std::string prefixes =
        "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
        "@prefix pset: <http://lv2plug.in/ns/ext/presets#> .\n"
        "@prefix rdfs: <http://www.w3.org/2000/01/rdf-schema#> .\n\n";
    EXPECT_EQ(read(bundle("a.preset.lv2") / "manifest.ttl"),
              prefixes +
                  "<preset.ttl>\n\ta pset:Preset ;\n\tlv2:appliesTo <urn:test:plugin> ;\n"
                  "\trdfs:seeAlso <preset.ttl> .\n");
    EXPECT_EQ(read(bundle("a.preset.lv2") / "preset.ttl"),
              prefixes +
                  "<>\n\ta pset:Preset ;\n\tlv2:appliesTo <urn:test:plugin> ;\n"
                  "\trdfs:label \"Say \\\"B\\\\u00e4sse\\\" \\\\\" ;\n\trdfs:comment \"Low\" ;\n"
                  "\tlv2:port [\n\t\tlv2:symbol \"gain\" ;\n\t\tpset:value 0.100000001\n\t] , [\n"
                  "\t\tlv2:symbol \"mix\" ;\n\t\tpset:value -3.0\n\t] .\n");
}

TEST_F(UserPresetsTest, ReplacesAndRemoves) {
    writeUserPreset(kPlugin, ports_, preset());
    auto other = preset();
    other.label = "Other";
    writeUserPreset(kPlugin, ports_, other);
    EXPECT_NE(read(bundle("a.preset.lv2") / "preset.ttl").find("\"Other\""), std::string::npos);
    removeUserPreset(kPlugin, "a.preset.lv2");
    EXPECT_FALSE(fs::exists(bundle("a.preset.lv2")));
    // One that is gone is no error.
    removeUserPreset(kPlugin, "a.preset.lv2");
}

TEST_F(UserPresetsTest, FoldersThatLeadElsewhereAreRefused) {
    for (const char* name : {"", ".", "..", "../x.lv2", "a/b.lv2", "/tmp/x.lv2", ".hidden.lv2", "x",
                             "x.so", "a\nb.lv2", "\xFF.lv2"}) {
        const char* reason =
            "The preset of a plug-in's UI is refused: its folder has a name that is not allowed.";
        EXPECT_EQ(refusalOf(preset(name)), reason) << name;
        EXPECT_EQ(refusalOfRemoving(name), reason) << name;
    }
    EXPECT_NE(refusalOf(preset(std::string(300, 'x') + ".lv2")), "");
    EXPECT_FALSE(fs::exists(home() / ".lv2"));
    EXPECT_FALSE(fs::exists(home() / "x.lv2"));
}

TEST_F(UserPresetsTest, AnythingButValuesOfControlsIsRefused) {
    const char* reason =
        "The preset of a plug-in's UI is refused: it has a value that is not one of the effect's "
        "controls.";
    for (const std::pair<std::uint32_t, float>& value :
         {std::pair{0U, 1.0F}, std::pair{3U, 1.0F}, std::pair{4U, 1.0F},
          std::pair{0xFFFFFFFFU, 1.0F}, std::pair{1U, std::nanf("")},
          std::pair{1U, std::numeric_limits<float>::infinity()}, std::pair{2U, 1.0F}}) {
        auto wanted = preset();
        wanted.values = {{2, 0.0F}, value};
        EXPECT_EQ(refusalOf(wanted), reason) << value.first;
    }
    auto wanted = preset();
    wanted.values.clear();
    EXPECT_EQ(refusalOf(wanted), "The preset of a plug-in's UI is refused: it has no values.");
    for (const std::string& label :
         {std::string(), std::string("a\nb"), std::string("\xC3"), std::string(201, 'x')}) {
        wanted = preset();
        wanted.label = label;
        EXPECT_EQ(refusalOf(wanted),
                  "The preset of a plug-in's UI is refused: its name or its description is not "
                  "plain text.");
    }
    EXPECT_FALSE(fs::exists(home() / ".lv2"));
}

TEST_F(UserPresetsTest, TextCannotBreakOutOfItsLiteral) {
    auto wanted = preset();
    wanted.label = "x\" . <urn:evil> a lv2:Plugin ; lv2:binary <evil.so> . #";
    wanted.comment = "\\";
    writeUserPreset(kPlugin, ports_, wanted);
    const auto bundles =
        findBundles({.folders = {home() / ".lv2"}, .ownFolder = {}, .bundles = {}});
    ASSERT_EQ(bundles.size(), 1U);
    EXPECT_TRUE(bundles.front().plugins.empty());
    EXPECT_EQ(read(bundle("a.preset.lv2") / "preset.ttl").find("urn:evil> a"),
              read(bundle("a.preset.lv2") / "preset.ttl")
                  .find("urn:evil> a lv2:Plugin ; lv2:binary "
                        "<evil.so> . #\" ;"));
}

TEST_F(UserPresetsTest, OtherBundlesAreLeftAlone) {
    const std::string preset1 =
        "<p.ttl> a <http://lv2plug.in/ns/ext/presets#Preset> ;\n"
        "<http://lv2plug.in/ns/lv2core#appliesTo> <urn:test:plugin> .\n";
    const std::vector<std::pair<std::string, std::string>> manifests{
        {"plugin.lv2", "<urn:other> a <http://lv2plug.in/ns/lv2core#Plugin> .\n"},
        {"both.lv2", preset1 + "<urn:test:plugin> a <http://lv2plug.in/ns/lv2core#Plugin> .\n"},
        {"codes.lv2",
         preset1 + "<urn:test:plugin> <urn:tessaly:audio-component#type> \"aumf\" .\n"},
        {"two.lv2", preset1 + "<q.ttl> a <http://lv2plug.in/ns/ext/presets#Preset> .\n"},
        {"others.lv2",
         "<p.ttl> a <http://lv2plug.in/ns/ext/presets#Preset> ;\n"
         "<http://lv2plug.in/ns/lv2core#appliesTo> <urn:test:other> .\n"},
        {"broken.lv2", "<<<"}};
    for (const auto& [name, manifest] : manifests) {
        write(bundle(name) / "manifest.ttl", manifest);
    }
    write(bundle("library.lv2") / "manifest.ttl", preset1);
    write(bundle("library.lv2") / "library.so", "");
    fs::create_directories(bundle("empty.lv2"));
    write(home() / "elsewhere/manifest.ttl", preset1);
    fs::create_directory_symlink(home() / "elsewhere", bundle("link.lv2"));
    write(bundle("file.lv2"), "");
    const auto before = count();
    for (const auto& item : fs::directory_iterator(home() / ".lv2")) {
        const std::string name = item.path().filename();
        const auto reason = "The preset of a plug-in's UI is refused: " + name +
                            " is not a preset of the effect alone.";
        EXPECT_EQ(refusalOf(preset(name)), reason);
        EXPECT_EQ(refusalOfRemoving(name), reason);
    }
    EXPECT_EQ(count(), before);
    for (const auto& [name, manifest] : manifests) {
        EXPECT_EQ(read(bundle(name) / "manifest.ttl"), manifest);
    }
    EXPECT_EQ(read(home() / "elsewhere/manifest.ttl"), preset1);
    // One of another host's is like its own.
    write(bundle("theirs.lv2") / "manifest.ttl", preset1);
    write(bundle("theirs.lv2") / "p.ttl", "");
    EXPECT_EQ(refusalOfRemoving("theirs.lv2"), "");
    EXPECT_FALSE(fs::exists(bundle("theirs.lv2")));
}

TEST_F(UserPresetsTest, ThereIsAnEndToTheirNumber) {
    for (int i = 0; i < 1000; ++i) {
        write(bundle(std::to_string(i) + ".lv2") / "manifest.ttl",
              "<p.ttl> <http://lv2plug.in/ns/lv2core#appliesTo> <urn:test:plugin> .\n");
    }
    EXPECT_EQ(refusalOf(preset()),
              "The preset of a plug-in's UI is refused: the effect has too many presets in "
              "~/.lv2.");
    fs::remove_all(bundle("7.lv2"));
    EXPECT_EQ(refusalOf(preset()), "");
}

}  // namespace
