#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "platform/audio/lv2/LV2PluginData.h"
#include "platform/audio/lv2/LV2Presets.h"
#include "platform/audio/lv2/LV2World.h"
#include "platform/foundation/NSError.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// Bundles written for one test: in the folders "path" and "more" of the search path, and in the
/// application's own folder "own".
class Registry : public ::testing::Test {
  protected:
    /// Writes a manifest: some prefixes, then the text.
    void write(const std::string& folder, const std::string& bundle, const std::string& text) {
        const auto path = root_.path() / folder / bundle;
        std::filesystem::create_directories(path);
        std::ofstream(path / "manifest.ttl") << "@prefix ac: <urn:tessaly:audio-component#> .\n"
                                                "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
                                                "@prefix far: <http://plugins.example/f> .\n"
                                             << text << "\n";
    }

    static std::string codes(const std::string& subject, const std::string& subtype) {
        return "<" + subject + R"(> ac:type "aumf" ; ac:subtype ")" + subtype +
               R"(" ; ac:manufacturer "TEST" .)";
    }

    /// A plug-in's bundle without codes, and one with them.
    void writePlugin(const std::string& folder, const std::string& name) {
        write(folder, name + ".lv2", "<urn:test:" + name + "> a lv2:Plugin .");
    }
    void writeRegistered(const std::string& folder, const std::string& name) {
        write(folder, name + ".lv2",
              "<urn:test:" + name + "> a lv2:Plugin .\n" + codes("urn:test:" + name, "test"));
    }

    /// Reads the registry; sets warnings_ to standard error.
    std::vector<std::shared_ptr<AVAudioUnitComponent>> components() {
        const CapturedOutput output(2);
        LV2World world({{root_.path() / "path", root_.path() / "more"}, root_.path() / "own"});
        auto result = world.components();
        warnings_ = output.text();
        return result;
    }

    std::vector<std::string> uris() {
        std::vector<std::string> result;
        for (const auto& component : components()) {
            result.push_back(component->uri);
        }
        return result;
    }

    std::string bundle(const std::string& name) const {
        return std::filesystem::canonical(root_.path() / name).string();
    }

    TemporaryFolder root_;
    std::string warnings_;
};

TEST_F(Registry, IsEmptyWithoutFolders) {
    EXPECT_TRUE(uris().empty());
    EXPECT_EQ(warnings_, "");
}

TEST_F(Registry, ReadsTheCodesNameAndFlags) {
    writePlugin("path", "amp");
    write("more", "codes.lv2",
          "<urn:test:amp> ac:type \"aufx\" ; ac:subtype \"a b!\" ; ac:manufacturer \"TSLY\" ;\n"
          "  ac:flags 4294967295 ; ac:name \"Tést: Amp\" .");
    const auto found = components();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->uri, "urn:test:amp");
    EXPECT_EQ(found[0]->name, "Tést: Amp");
    EXPECT_EQ(found[0]->audioComponentDescription,
              (AudioComponentDescription{fourCharCode("aufx"), fourCharCode("a b!"),
                                         fourCharCode("TSLY"), 4294967295U, 0}));
    EXPECT_EQ(warnings_, "");
}

TEST_F(Registry, DefaultsFlagsToZeroAndNameToEmpty) {
    writeRegistered("path", "amp");
    const auto found = components();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->name, "");
    EXPECT_EQ(found[0]->audioComponentDescription.componentFlags, 0U);
}

TEST_F(Registry, PutsTheApplicationsOwnLastAndSortsByURI) {
    writeRegistered("own", "aaa");
    writeRegistered("own", "zzz");
    writeRegistered("path", "mmm");
    writeRegistered("more", "bbb");
    writeRegistered("path", "Zzz");
    EXPECT_THAT(uris(), ElementsAre("urn:test:Zzz", "urn:test:bbb", "urn:test:mmm", "urn:test:aaa",
                                    "urn:test:zzz"));
}

TEST_F(Registry, OrdersByThePluginsOwnBundleNotByThatOfItsCodes) {
    writePlugin("own", "aaa");
    writePlugin("path", "bbb");
    write("path", "codes.lv2", codes("urn:test:aaa", "aaaa"));
    write("own", "codes.lv2", codes("urn:test:bbb", "bbbb"));
    EXPECT_THAT(uris(), ElementsAre("urn:test:bbb", "urn:test:aaa"));
}

TEST_F(Registry, FindsAPluginWhosePrefixEndsInsideItsName) {
    write("path", "far.lv2", "far:ar a lv2:Plugin .");
    write("path", "codes.lv2", codes("http://plugins.example/far", "far "));
    EXPECT_THAT(uris(), ElementsAre("http://plugins.example/far"));
}

TEST_F(Registry, FindsAPluginAmongNeighboursWithLongerNames) {
    writePlugin("path", "amp-2");
    writePlugin("path", "preamp");
    writePlugin("more", "amp");
    write("path", "codes.lv2", codes("urn:test:amp", "amp "));
    EXPECT_THAT(uris(), ElementsAre("urn:test:amp"));
    EXPECT_EQ(warnings_, "");
}

TEST_F(Registry, ReadsABundleOnceWhenALinkLeadsToItToo) {
    writeRegistered("path", "amp");
    std::filesystem::create_directories(root_.path() / "more");
    std::filesystem::create_directory_symlink(root_.path() / "path" / "amp.lv2",
                                              root_.path() / "more" / "again.lv2");
    EXPECT_THAT(uris(), ElementsAre("urn:test:amp"));
    EXPECT_EQ(warnings_, "");
}

TEST_F(Registry, TakesCodesFromTheFirstBundleOnThePathAndWarnsOfTheOther) {
    writePlugin("path", "amp");
    write("path", "b.lv2", codes("urn:test:amp", "bbbb"));
    write("more", "a.lv2", codes("urn:test:amp", "aaaa"));
    const auto found = components();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0]->audioComponentDescription.componentSubType, fourCharCode("bbbb"));
    EXPECT_THAT(warnings_, HasSubstr(bundle("more/a.lv2") +
                                     " states codes of <urn:test:amp>, which an earlier bundle "
                                     "on the path states."));
}

TEST_F(Registry, LeavesOutAPluginThatIsNotInstalled) {
    write("path", "codes.lv2", codes("urn:test:gone", "gone"));
    EXPECT_TRUE(uris().empty());
    EXPECT_THAT(warnings_, HasSubstr("A manifest states codes of <urn:test:gone>, which is not "
                                     "installed."));
}

TEST_F(Registry, LeavesOutOnlyTheBrokenManifest) {
    writeRegistered("path", "amp");
    write("path", "broken.lv2", codes("urn:test:amp", "brok") + "\n<urn:unfinished> a [ ;");
    EXPECT_THAT(uris(), ElementsAre("urn:test:amp"));
    EXPECT_THAT(warnings_,
                HasSubstr("The manifest of " + bundle("path/broken.lv2") + " is left out: line 5"));
}

TEST_F(Registry, IgnoresAManifestThatIsNoRegularFile) {
    writeRegistered("path", "amp");
    std::filesystem::create_directories(root_.path() / "path" / "odd.lv2" / "manifest.ttl");
    std::ofstream(root_.path() / "path" / "file.txt") << "no bundle";
    EXPECT_THAT(uris(), ElementsAre("urn:test:amp"));
    EXPECT_THAT(warnings_, HasSubstr("The manifest of " + bundle("path/odd.lv2") +
                                     " is left out: Is a directory."));
}

/// A statement with an object that is nested 20,000 deep.
std::string nested(const std::string& open, const std::string& close) {
    std::string text = "<urn:test:deep> <urn:test:p> ";
    for (int depth = 0; depth < 20000; ++depth) {
        text += open;
    }
    text += "<urn:test:end>";
    for (int depth = 0; depth < 20000; ++depth) {
        text += close;
    }
    return text + " .";
}

TEST_F(Registry, LeavesOutAManifestThatIsNestedTooDeep) {
    writeRegistered("path", "amp");
    write("path", "brackets.lv2", nested("[ lv2:project ", " ]"));
    write("path", "lists.lv2", nested("( ", " )"));
    EXPECT_THAT(uris(), ElementsAre("urn:test:amp"));
    EXPECT_THAT(warnings_, HasSubstr("The manifest of " + bundle("path/brackets.lv2") +
                                     " is left out: it is nested more than 1000 deep."));
    EXPECT_THAT(warnings_, HasSubstr("The manifest of " + bundle("path/lists.lv2") +
                                     " is left out: it is nested more than 1000 deep."));
}

TEST_F(Registry, RefusesAPluginWhoseDataFileIsNestedTooDeep) {
    write("path", "amp.lv2",
          "<urn:test:amp> a lv2:Plugin ; lv2:binary <amp.so> ;\n"
          "  <http://www.w3.org/2000/01/rdf-schema#seeAlso> <amp.ttl> .");
    std::ofstream(root_.path() / "path/amp.lv2/amp.ttl") << nested("[ <urn:test:p> ", " ]");
    LV2World world({{root_.path() / "path"}, root_.path() / "own"});
    const LV2World::Access access(world);
    try {
        LV2PluginData::read(access, "urn:test:amp");
        FAIL() << "It is read.";
    } catch (const NSError& error) {
        EXPECT_THAT(error.localizedDescription(),
                    HasSubstr("/path/amp.lv2/amp.ttl> is not sound (it is nested more than 1000 "
                              "deep)."));
    }
}

TEST_F(Registry, LeavesOutAPresetWhoseFileIsNestedTooDeep) {
    const std::string preset =
        " a <http://lv2plug.in/ns/ext/presets#Preset> ; lv2:appliesTo <urn:test:amp> ;\n"
        "  <http://www.w3.org/2000/01/rdf-schema#label> \"Any\" ;\n"
        "  <http://www.w3.org/2000/01/rdf-schema#seeAlso> ";
    write("path", "amp.lv2",
          "<urn:test:amp> a lv2:Plugin .\n<urn:test:deep>" + preset + "<deep.ttl> .\n" +
              "<urn:test:good>" + preset + "<good.ttl> .");
    std::ofstream(root_.path() / "path/amp.lv2/deep.ttl") << nested("( ", " )");
    std::ofstream(root_.path() / "path/amp.lv2/good.ttl") << "";
    LV2World world({{root_.path() / "path"}, root_.path() / "own"});
    const CapturedOutput output(2);
    const auto presets = findPresets(world, "urn:test:amp");
    ASSERT_EQ(presets.size(), 1U);
    EXPECT_EQ(presets[0].uri, "urn:test:good");
    EXPECT_THAT(output.text(), HasSubstr("The state of <urn:test:deep> is left out: its file "));
    EXPECT_THAT(output.text(), HasSubstr("deep.ttl is not sound (it is nested more than 1000 "
                                         "deep)."));
}

TEST_F(Registry, LeavesOutADefaultStateWhoseFileInALaterBundleIsNestedTooDeep) {
    write("path", "amp.lv2",
          "<urn:test:amp> a lv2:Plugin ;\n"
          "  <http://lv2plug.in/ns/ext/state#state> [ <urn:test:p> 1 ] .");
    // lilv does not count it among the plug-in's data files.
    write("path", "later.lv2",
          "<urn:test:amp> <http://www.w3.org/2000/01/rdf-schema#seeAlso> <deep.ttl> .");
    std::ofstream(root_.path() / "path/later.lv2/deep.ttl") << nested("[ <urn:test:p> ", " ]");
    LV2World world({{root_.path() / "path"}, root_.path() / "own"});
    ASSERT_NE(LV2World::Access(world).plugin("urn:test:amp"), nullptr);
    const CapturedOutput output(2);
    EXPECT_EQ(readState(world, "urn:test:amp"), nullptr);
    EXPECT_THAT(output.text(), HasSubstr("The state of <urn:test:amp> is left out: its file "));
}

TEST_F(Registry, ReadsAManifestWithManyResourcesSideBySide) {
    std::string text = codes("urn:test:amp", "amp ") + "\n<urn:test:amp> a lv2:Plugin ; lv2:port ";
    for (int port = 0; port < 3000; ++port) {
        text += "[ lv2:name \"In\" ; lv2:project [] , ( 1 2 ) ] , ";
    }
    write("path", "wide.lv2", text + "[] .");
    EXPECT_THAT(uris(), ElementsAre("urn:test:amp"));
    EXPECT_EQ(warnings_, "");
}

TEST_F(Registry, TakesAPluginWholeFromTheFirstOfTheBundlesThatHoldIt) {
    write(
        "path", "amp.lv2",
        "<urn:test:amp> a lv2:Plugin ; lv2:binary <first.so> .\n" + codes("urn:test:amp", "1st "));
    // A newer version, which lilv would prefer, in a bundle whose URI sorts before the other's.
    write("more", "amp.lv2",
          "<urn:test:amp> a lv2:Plugin ; lv2:binary <second.so> ; lv2:minorVersion 9 .\n" +
              codes("urn:test:amp", "2nd ") + "\n<urn:test:other> a lv2:Plugin .\n" +
              codes("urn:test:other", "othr") +
              "\n<urn:test:preset> a <http://lv2plug.in/ns/ext/presets#Preset> ;\n"
              "  lv2:appliesTo <urn:test:amp> .");
    const auto found = components();
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0]->audioComponentDescription.componentSubType, fourCharCode("1st "));
    EXPECT_EQ(found[1]->uri, "urn:test:other");
    EXPECT_THAT(warnings_,
                HasSubstr(bundle("more/amp.lv2") + " holds <urn:test:amp>, which is taken from " +
                          bundle("path/amp.lv2") + " instead."));
    LV2World world({{root_.path() / "path", root_.path() / "more"}, root_.path() / "own"});
    EXPECT_THAT(world.bundlesOf("urn:test:amp"), ElementsAre(bundle("path/amp.lv2")));
    const LV2World::Access access(world);
    const CapturedOutput output(2);
    const auto* plugin = access.plugin("urn:test:amp");
    EXPECT_THAT(output.text(), HasSubstr("The effect <urn:test:amp> is loaded from " +
                                         bundle("path/amp.lv2") + "."));
    ASSERT_NE(plugin, nullptr);
    EXPECT_THAT(lilv_node_as_uri(lilv_plugin_get_library_uri(plugin)),
                HasSubstr("path/amp.lv2/first.so"));
}

TEST_F(Registry, WarnsOnceOfABundleWithSeveralPluginsThatAreTakenFromAnother) {
    for (const std::string folder : {"path", "more"}) {
        write(folder, "all.lv2",
              "<urn:test:a> a lv2:Plugin .\n<urn:test:b> a lv2:Plugin .\n<urn:test:c> a lv2:Plugin "
              ".");
    }
    components();
    EXPECT_THAT(warnings_, HasSubstr(bundle("more/all.lv2") +
                                     " holds <urn:test:a> and 2 more, which are taken from " +
                                     bundle("path/all.lv2") + " instead."));
    EXPECT_THAT(warnings_, Not(HasSubstr("<urn:test:b>")));
}

TEST_F(Registry, HasNoPresetOfTheBundlesThatAreNotUsed) {
    for (const std::string folder : {"path", "more"}) {
        write(folder, "amp.lv2",
              "<urn:test:amp> a lv2:Plugin .\n<urn:test:" + folder +
                  "> a <http://lv2plug.in/ns/ext/presets#Preset> ;\n"
                  "  lv2:appliesTo <urn:test:amp> ; "
                  "<http://www.w3.org/2000/01/rdf-schema#label> \"Any\" .");
    }
    const CapturedOutput output(2);
    LV2World world({{root_.path() / "path", root_.path() / "more"}, root_.path() / "own"});
    const auto presets = findPresets(world, "urn:test:amp");
    ASSERT_EQ(presets.size(), 1U);
    EXPECT_EQ(presets[0].uri, "urn:test:path");
}

TEST_F(Registry, FindsABundleWhoseFolderHoldsCharactersThatURIsEscape) {
    write("path", "a #1 ä%41.lv2",
          "<urn:test:amp> a lv2:Plugin ; lv2:binary <amp.so> .\n" + codes("urn:test:amp", "amp "));
    EXPECT_THAT(uris(), ElementsAre("urn:test:amp"));
    LV2World world({{root_.path() / "path"}, root_.path() / "own"});
    const LV2World::Access access(world);
    const auto* plugin = access.plugin("urn:test:amp");
    ASSERT_NE(plugin, nullptr);
    char* path =
        lilv_file_uri_parse(lilv_node_as_uri(lilv_plugin_get_library_uri(plugin)), nullptr);
    EXPECT_EQ(std::string(path), bundle("path/a #1 ä%41.lv2") + "/amp.so");
    lilv_free(path);
}

TEST_F(Registry, ReadsADataFileWhoseNameHoldsAHash) {
    write("path", "amp.lv2",
          "<urn:test:amp#stereo> a lv2:Plugin ; lv2:binary <amp.so> ;\n"
          "  <http://www.w3.org/2000/01/rdf-schema#seeAlso> <amp#stereo.ttl> .");
    std::ofstream(root_.path() / "path/amp.lv2/amp#stereo.ttl")
        << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
           "<urn:test:amp#stereo> lv2:port [ a lv2:InputPort , lv2:AudioPort ;\n"
           "  lv2:index 0 ; lv2:symbol \"in\" ; lv2:name \"In\" ] .\n";
    LV2World world({{root_.path() / "path"}, root_.path() / "own"});
    const LV2World::Access access(world);
    EXPECT_EQ(LV2PluginData::read(access, "urn:test:amp#stereo").inputChannelCount, 1U);
}

TEST_F(Registry, ReadsPresetsWhoseFileNamesHoldCharactersThatURIsEscape) {
    for (const std::string hash : {"#", "%23"}) {
        write("path", "amp.lv2",
              "<urn:test:amp> a lv2:Plugin .\n"
              "<urn:test:amp#loud> a <http://lv2plug.in/ns/ext/presets#Preset> ;\n"
              "  lv2:appliesTo <urn:test:amp> ;\n"
              "  <http://www.w3.org/2000/01/rdf-schema#seeAlso> <loud" +
                  hash + "1%20.ttl> .");
        std::ofstream(root_.path() / "path/amp.lv2/loud#1 .ttl")
            << "<urn:test:amp#loud> <http://www.w3.org/2000/01/rdf-schema#label> \"Loud\" .\n";
        LV2World world({{root_.path() / "path"}, root_.path() / "own"});
        const auto presets = findPresets(world, "urn:test:amp");
        ASSERT_EQ(presets.size(), 1U);
        EXPECT_EQ(presets[0].label, "Loud");
    }
}

/// Wrong codes, and the reason in the warning.
struct WrongCodes {
    std::string statement;
    std::string reason;
};

class RegistryWrongCodes : public Registry, public ::testing::WithParamInterface<WrongCodes> {};

TEST_P(RegistryWrongCodes, AreLeftOutWithAWarning) {
    writePlugin("path", "amp");
    writeRegistered("path", "good");
    write("path", "codes.lv2", "<urn:test:amp> " + GetParam().statement + " .");
    EXPECT_THAT(uris(), ElementsAre("urn:test:good"));
    EXPECT_THAT(warnings_, HasSubstr(bundle("path/codes.lv2")));
    EXPECT_THAT(warnings_, HasSubstr("<urn:test:amp>"));
    EXPECT_THAT(warnings_, HasSubstr(GetParam().reason));
}

INSTANTIATE_TEST_SUITE_P(
    Statements, RegistryWrongCodes,
    ::testing::Values(
        WrongCodes{"ac:type \"aumf\" ; ac:subtype \"test\"", "its manufacturer is missing."},
        WrongCodes{"ac:subtype \"test\" ; ac:manufacturer \"TEST\"", "its type is missing."},
        WrongCodes{"ac:type \"aumfx\" ; ac:subtype \"test\" ; ac:manufacturer \"TEST\"",
                   "its type \"aumfx\" is no code of four characters."},
        WrongCodes{"ac:type \"aum\" ; ac:subtype \"test\" ; ac:manufacturer \"TEST\"",
                   "its type \"aum\" is no code of four characters."},
        WrongCodes{"ac:type \"aumf\" ; ac:subtype \"té t\" ; ac:manufacturer \"TEST\"",
                   "is no code of four characters."},
        WrongCodes{"ac:type \"aumf\" , \"aufx\" ; ac:subtype \"test\" ; ac:manufacturer \"TEST\"",
                   "its type is stated more than once."},
        WrongCodes{"ac:type \"aumf\" ; ac:subtype \"test\" ; ac:manufacturer \"TEST\" ; "
                   "ac:flags -1",
                   "its flags \"-1\" are no integer of 32 bits."},
        WrongCodes{"ac:type \"aumf\" ; ac:subtype \"test\" ; ac:manufacturer \"TEST\" ; "
                   "ac:flags 4294967296",
                   "its flags \"4294967296\" are no integer of 32 bits."},
        WrongCodes{"ac:type <urn:aumf> ; ac:subtype \"test\" ; ac:manufacturer \"TEST\"",
                   "as something that is no literal."}));

TEST_F(Registry, NamesTheBundlesThatSpeakOfAPlugin) {
    writePlugin("path", "amp");
    writePlugin("path", "other");
    write("more", "presets.lv2", "<urn:test:p> lv2:appliesTo <urn:test:amp> .");
    writeRegistered("own", "third");
    LV2World world({{root_.path() / "path", root_.path() / "more"}, root_.path() / "own"});
    EXPECT_THAT(world.bundlesOf("urn:test:amp"),
                ElementsAre(bundle("path/amp.lv2"), bundle("more/presets.lv2")));
    EXPECT_THAT(world.bundlesOf("urn:test:third"), ElementsAre(bundle("own/third.lv2")));
    EXPECT_THAT(world.bundlesOf("urn:test:nobody"), ElementsAre());
}

TEST_F(Registry, KnowsOnlyTheGivenSingleBundles) {
    writeRegistered("path", "amp");
    writeRegistered("path", "other");
    LV2World world({{}, {}, {root_.path() / "path/amp.lv2"}});
    ASSERT_EQ(world.components().size(), 1U);
    EXPECT_EQ(world.components().front()->uri, "urn:test:amp");
    EXPECT_THAT(world.bundlesOf("urn:test:amp"), ElementsAre(bundle("path/amp.lv2")));
}

}  // namespace
