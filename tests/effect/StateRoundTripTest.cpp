#include <gtest/gtest.h>
#include <lv2/atom/atom.h>
#include <lv2/urid/urid.h>

#include <cstdlib>
#include <map>
#include <memory>
#include <string>

#include "effect/dsp/Parameter.h"
#include "tests/effect/EffectHost.h"
#include "tests/effect/EffectWorld.h"

namespace {

using namespace orvalo::testing;
using orvalo::effect::parameterRanges;

using Values = std::map<std::string, float>;

/// Saves and loads states as text, by lilv.
class StateRoundTripTest : public testing::Test {
  protected:
    struct Free {
        void operator()(LilvState* state) const { lilv_state_free(state); }
        void operator()(char* text) const { lilv_free(text); }
    };
    using State = std::unique_ptr<LilvState, Free>;

    struct Reader {
        EffectHost& host;
        LV2_URID type;
    };

    static const void* readPort(const char* symbol, void* data, std::uint32_t* size,
                                std::uint32_t* type) {
        auto& reader = *static_cast<Reader*>(data);
        *size = sizeof(float);
        *type = reader.type;
        return &reader.host.control(symbol);
    }

    static void takePort(const char* symbol, void* data, const void* value, std::uint32_t /*size*/,
                         std::uint32_t /*type*/) {
        (*static_cast<Values*>(data))[symbol] = *static_cast<const float*>(value);
    }

    static const char* unmap(LV2_URID_Unmap_Handle handle, LV2_URID urid) {
        auto& uris = *static_cast<UridMap*>(handle);
        for (const char* uri : {LV2_ATOM__Float, LV2_ATOM__Int, LV2_ATOM__String}) {
            if (uris[uri] == urid) {
                return uri;
            }
        }
        return nullptr;
    }

    std::string save(EffectHost& host) {
        Reader reader{.host = host, .type = uris_[LV2_ATOM__Float]};
        const State state(lilv_state_new_from_instance(world_.plugin(), host.instance(),
                                                       uris_.map(), nullptr, nullptr, nullptr,
                                                       nullptr, readPort, &reader, 0, nullptr));
        const std::unique_ptr<char, Free> text(lilv_state_to_string(
            world_.world(), uris_.map(), &unmap_, state.get(), "urn:example:state", nullptr));
        return text.get();
    }

    Values load(const std::string& text) {
        const State state(lilv_state_new_from_string(world_.world(), uris_.map(), text.c_str()));
        Values values;
        lilv_state_emit_port_values(state.get(), takePort, &values);
        return values;
    }

    EffectWorld& world_ = EffectWorld::shared();
    UridMap uris_;
    LV2_URID_Unmap unmap_{&uris_, unmap};
};

TEST_F(StateRoundTripTest, EveryControlComesBack) {
    EffectHost host;
    Values expected;
    for (const auto& range : parameterRanges) {
        const float value = 0.25F * range.maximum + 0.75F * range.minimum;
        host.control(range.symbol) = expected[range.symbol] = value;
    }
    auto loaded = load(save(host));
    for (const auto& [symbol, value] : expected) {
        EXPECT_NEAR(loaded.at(symbol), value, 1e-4F) << symbol;
    }
    EXPECT_EQ(loaded.size(), expected.size());
}

TEST_F(StateRoundTripTest, StateOfVersion01SetsTheOldControlsAlone) {
    const auto loaded = load(R"(
@prefix lv2: <http://lv2plug.in/ns/lv2core#> .
@prefix pset: <http://lv2plug.in/ns/ext/presets#> .
<urn:example:state> a pset:Preset ; lv2:appliesTo <urn:tessaly:orvalo> ;
    lv2:port [ lv2:symbol "threshold" ; pset:value -30.0 ] ,
             [ lv2:symbol "midi_channel" ; pset:value 3.0 ] .
)");
    EXPECT_EQ(loaded, (Values{{"threshold", -30.0F}, {"midi_channel", 3.0F}}));
}

}  // namespace
