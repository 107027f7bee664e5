#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "platform/foundation/NSError.h"
#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"
#include "tests/platform/plugin-ui/x11/Effects.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;

std::string refusal(const std::string& name) {
    try {
        const auto unit = makeUnit(name);
        const LV2PluginUILibrary library(readUIData(*unit));
        return "";
    } catch (const NSError& error) {
        auto text = error.localizedDescription();
        // Without the path of the build folder.
        for (const std::string file : {"nowhere.so", "echo.so"}) {
            if (const auto end = text.find(file); end != std::string::npos) {
                const auto begin = text.rfind(' ', end) + 1;
                text.erase(begin, end - begin);
            }
        }
        return text;
    }
}

TEST(PluginUIData, DescribeTheX11UI) {
    const auto unit = makeUnit("probe");
    const auto data = readUIData(*unit);
    EXPECT_EQ(data.plugin, "urn:orvalo:ui:probe");
    EXPECT_EQ(data.uri, "urn:orvalo:ui:probe#ui");
    EXPECT_EQ(data.title, "UI probe");
    EXPECT_TRUE(data.binary.ends_with("/plugin-ui.lv2/ui.so"));
    EXPECT_EQ(data.notifiedPorts, (std::vector<std::uint32_t>{3}));
    EXPECT_FALSE(data.isFixedSize);
    EXPECT_FALSE(data.accessesInstance);
    EXPECT_FALSE(data.staysLoaded);
    EXPECT_TRUE(readUIData(*makeUnit("fixed")).isFixedSize);
    EXPECT_TRUE(readUIData(*makeUnit("direct")).accessesInstance);
}

TEST(PluginUIData, AreRefusedWhenTheirFileIsNestedTooDeep) {
    const TemporaryFolder folder;
    const auto bundle = folder.path() / "deep.lv2";
    std::filesystem::create_directories(bundle);
    std::ofstream(bundle / "manifest.ttl")
        << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
           "@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .\n"
           "<urn:test:deep> a lv2:Plugin ; lv2:binary <deep.so> ; ui:ui <urn:test:deep#ui> ;\n"
           "  lv2:port [ a lv2:InputPort , lv2:AudioPort ; lv2:index 0 ; lv2:symbol \"in\" ;\n"
           "    lv2:name \"In\" ] .\n"
           "<urn:test:deep#ui> a ui:X11UI ; ui:binary <deep.so> ;\n"
           "  <http://www.w3.org/2000/01/rdf-schema#seeAlso> <ui.ttl> .\n";
    std::ofstream deep(bundle / "ui.ttl");
    deep << "<urn:test:a> <urn:test:p> ";
    for (int depth = 0; depth < 20000; ++depth) {
        deep << "[ <urn:test:p> ";
    }
    deep.close();
    LV2World world({{folder.path()}, folder.path() / "none"});
    const auto plugin = LV2PluginData::read(LV2World::Access(world), "urn:test:deep");
    try {
        LV2PluginUIData::read(world, plugin);
        FAIL() << "It is read.";
    } catch (const NSError& error) {
        EXPECT_THAT(error.localizedDescription(),
                    ::testing::HasSubstr("/deep.lv2/ui.ttl> is not sound (it is nested more than "
                                         "1000 deep)."));
    }
}

TEST(PluginUIData, NameFilesWithCharactersThatURIsEscape) {
    const TemporaryFolder folder;
    const auto bundle = folder.path() / "a #1 %41.lv2";
    std::filesystem::create_directories(bundle);
    for (const std::string hash : {"#", "%23"}) {
        std::ofstream(bundle / "manifest.ttl")
            << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
               "@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .\n"
               "<urn:test:amp> a lv2:Plugin ; lv2:binary <amp.so> ; ui:ui <urn:test:amp#ui> ;\n"
               "  lv2:port [ a lv2:InputPort , lv2:AudioPort ; lv2:index 0 ; lv2:symbol \"in\" ;\n"
               "    lv2:name \"In\" ] .\n<urn:test:amp#ui> a ui:X11UI ; ui:binary <ui"
            << hash << "1.so> ;\n  <http://www.w3.org/2000/01/rdf-schema#seeAlso> <ui" << hash
            << "1.ttl> .\n";
        std::ofstream(bundle / "ui#1.ttl")
            << "<urn:test:amp#ui> <http://lv2plug.in/ns/lv2core#optionalFeature> "
               "<http://lv2plug.in/ns/extensions/ui#fixedSize> .\n";
        LV2World world({{folder.path()}, folder.path() / "none"});
        const auto plugin = LV2PluginData::read(LV2World::Access(world), "urn:test:amp");
        const auto data = LV2PluginUIData::read(world, plugin);
        EXPECT_EQ(data.binary, (std::filesystem::canonical(bundle) / "ui#1.so").string());
        EXPECT_TRUE(data.isFixedSize);
    }
}

TEST(PluginUIData, AreThoseOfTheFirstBundleThatHoldsThePlugin) {
    const TemporaryFolder folder;
    for (const std::string name : {"first", "second"}) {
        std::filesystem::create_directories(folder.path() / name / "amp.lv2");
        std::ofstream(folder.path() / name / "amp.lv2" / "manifest.ttl")
            << "@prefix lv2: <http://lv2plug.in/ns/lv2core#> .\n"
               "@prefix ui: <http://lv2plug.in/ns/extensions/ui#> .\n"
               "<urn:test:amp> a lv2:Plugin ; lv2:binary <amp.so> ; ui:ui <urn:test:amp#"
            << name
            << "> ;\n"
               "  lv2:port [ a lv2:InputPort , lv2:AudioPort ; lv2:index 0 ; lv2:symbol \"in\" ;\n"
               "    lv2:name \"In\" ] .\n<urn:test:amp#"
            << name << "> a ui:X11UI ; ui:binary <" << name << ".so> .\n";
    }
    const CapturedOutput error(2);
    LV2World world({{folder.path() / "first", folder.path() / "second"}, folder.path() / "none"});
    const auto plugin = LV2PluginData::read(LV2World::Access(world), "urn:test:amp");
    const auto data = LV2PluginUIData::read(world, plugin);
    EXPECT_EQ(data.uri, "urn:test:amp#first");
    EXPECT_TRUE(data.binary.ends_with("/first/amp.lv2/first.so")) << data.binary;
}

TEST(PluginUIData, NameTheReasonWhyAUICannotBeShown) {
    const auto shown = [](const std::string& name, const std::string& reason) {
        return "The UI of <urn:orvalo:ui:" + name + "> cannot be shown: " + reason + ".";
    };
    EXPECT_EQ(refusal("probe"), "");
    EXPECT_EQ(refusal("none"), shown("none", "the plug-in has none"));
    EXPECT_EQ(refusal("toolkit"), shown("toolkit", "it is no X11UI but Gtk3UI"));
    EXPECT_EQ(refusal("demanding"),
              shown("demanding",
                    "it requires the feature <urn:orvalo:ui#everything>, which is not "
                    "offered"));
    EXPECT_EQ(
        refusal("optional"),
        shown("optional", "it requires the option <urn:orvalo:ui#colour>, which is not offered"));
    EXPECT_EQ(refusal("missing"), shown("missing", "its library nowhere.so is missing"));
    EXPECT_EQ(refusal("foreign"), shown("foreign",
                                        "the library echo.so does not hold "
                                        "<urn:orvalo:ui:foreign#ui>"));
}

}  // namespace
