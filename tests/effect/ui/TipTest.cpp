#include "effect/ui/model/Tip.h"

#include "tests/effect/ui/SceneFixture.h"

namespace {

using namespace orvalo::effect;
using namespace orvalo::effect::ui;

using Text = std::vector<std::string>;

TEST(Tip, TellsWhatAControlDoesWithItsUnitRangeAndDefault) {
    EXPECT_EQ(tipFor({.kind = Target::Kind::control, .parameter = Parameter::threshold}),
              (Text{"Threshold: the peak level above which the gain is reduced.",
                    "-60.0 dB to 0.0 dB, default -18.0 dB"}));
    EXPECT_EQ(tipFor({.kind = Target::Kind::value, .parameter = Parameter::release}),
              (Text{"Release: time until a held peak has fallen by 63 %.",
                    "5.0 ms to 2.00 s, default 120 ms"}));
    EXPECT_EQ(tipFor({.kind = Target::Kind::control, .parameter = Parameter::enabled}),
              Text{"Switches the effect on, or bypasses it."});
    EXPECT_EQ(
        tipFor({.kind = Target::Kind::control, .parameter = Parameter::rms}),
        (Text{"Detector: measures peaks, or the mean power (RMS).", "Peak / RMS, default Peak"}));
    EXPECT_EQ(tipFor({.kind = Target::Kind::control, .parameter = Parameter::beatDivision}),
              (Text{"Division: step of the grid as a note value. D is dotted, T is triplet.",
                    "1/1 dotted to 1/16 triplet, default 1/4"}));
    EXPECT_EQ(tipFor({}), Text{});
}

TEST(Tip, EveryControlHasOne) {
    for (std::size_t i = 0; i < parameterCount; ++i) {
        const auto text =
            tipFor({.kind = Target::Kind::control, .parameter = static_cast<Parameter>(i)});
        EXPECT_EQ(text.size(), i == 0 ? 1U : 2U) << i;
    }
}

TEST(Tip, EveryPageHasOne) {
    for (std::size_t i = 0; i < pageCount; ++i) {
        EXPECT_EQ(tipFor({.kind = Target::Kind::tab, .entry = i}).size(), 1U) << i;
    }
}

TEST(TipTimer, ShowsTheTextWhereThePointerRestsUntilSomethingIsDone) {
    const Target knob{.kind = Target::Kind::control, .parameter = Parameter::mix};
    TipTimer timer;
    EXPECT_FALSE(timer.update({}, 0.0));
    EXPECT_FALSE(timer.update(knob, 1.0));
    EXPECT_FALSE(timer.update(knob, 1.69));
    EXPECT_TRUE(timer.update(knob, 1.71));
    timer.dismiss(knob);
    EXPECT_FALSE(timer.update(knob, 5.0));
    EXPECT_FALSE(timer.update({}, 6.0));
    EXPECT_FALSE(timer.update(knob, 7.0));
    EXPECT_TRUE(timer.update(knob, 7.8));
    EXPECT_FALSE(timer.update({}, 7.9));
    EXPECT_FALSE(timer.update({}, 9.9));
    // The pointer enters and presses between two updates.
    timer.dismiss(knob);
    EXPECT_FALSE(timer.update(knob, 10.0));
    EXPECT_FALSE(timer.update(knob, 11.0));
}

}  // namespace
