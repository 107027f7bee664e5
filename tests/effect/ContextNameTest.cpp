#include <gtest/gtest.h>
#include <lv2/atom/atom.h>

#include <array>
#include <string>

#include "tests/effect/EffectHost.h"

namespace {

using namespace orvalo::testing;

class ContextNameTest : public testing::Test {
  protected:
    static constexpr const char* key = "urn:tessaly:audio-component#contextName";

    static std::string name(EffectHost& host) {
        std::array<LV2_Options_Option, 2> options{};
        options[0].key = host.uris()[key];
        EXPECT_EQ(host.options()->get(host.handle(), options.data()),
                  static_cast<std::uint32_t>(LV2_OPTIONS_SUCCESS));
        EXPECT_EQ(options[0].type, host.uris()[LV2_ATOM__String]);
        std::string text = static_cast<const char*>(options[0].value);
        EXPECT_EQ(options[0].size, text.size() + 1);
        return text;
    }

    static std::uint32_t set(EffectHost& host, const std::string& uri, const std::string& type,
                             const char* text, LV2_Options_Context context = LV2_OPTIONS_INSTANCE) {
        std::array<LV2_Options_Option, 2> options{};
        options[0] = {context,           0,   host.uris()[uri], text == nullptr ? 0U : 100U,
                      host.uris()[type], text};
        return host.options()->set(host.handle(), options.data());
    }
};

TEST_F(ContextNameTest, IsReadAtInstantiation) {
    EffectHost host({.contextName = "running in a test"});
    EXPECT_EQ(name(host), "running in a test");
}

TEST_F(ContextNameTest, IsEmptyWithoutTheOption) {
    EffectHost host;
    EXPECT_EQ(name(host), "");
}

TEST_F(ContextNameTest, MayChangeLater) {
    EffectHost host({.contextName = "before"});
    EXPECT_EQ(set(host, key, LV2_ATOM__String, "after that"), std::uint32_t{LV2_OPTIONS_SUCCESS});
    EXPECT_EQ(name(host), "after that");
}

TEST_F(ContextNameTest, RefusesOtherOptionsWithAStatus) {
    EffectHost host({.contextName = "kept"});
    EXPECT_EQ(set(host, "urn:example:other", LV2_ATOM__String, "x"),
              std::uint32_t{LV2_OPTIONS_ERR_BAD_KEY});
    EXPECT_EQ(set(host, key, LV2_ATOM__Int, "x"), std::uint32_t{LV2_OPTIONS_ERR_BAD_VALUE});
    EXPECT_EQ(set(host, key, LV2_ATOM__String, nullptr), std::uint32_t{LV2_OPTIONS_ERR_BAD_VALUE});
    EXPECT_EQ(set(host, key, LV2_ATOM__String, "x", LV2_OPTIONS_PORT),
              std::uint32_t{LV2_OPTIONS_ERR_BAD_SUBJECT});
    EXPECT_EQ(name(host), "kept");
    std::array<LV2_Options_Option, 2> options{};
    options[0].key = host.uris()["urn:example:other"];
    EXPECT_EQ(host.options()->get(host.handle(), options.data()),
              std::uint32_t{LV2_OPTIONS_ERR_BAD_KEY});
}

}  // namespace
