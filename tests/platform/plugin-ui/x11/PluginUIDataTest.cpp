#include <gtest/gtest.h>

#include "platform/foundation/NSError.h"
#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"
#include "tests/platform/plugin-ui/x11/Effects.h"

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
