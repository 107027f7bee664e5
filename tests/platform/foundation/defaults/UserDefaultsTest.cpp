#include "platform/foundation/defaults/UserDefaults.h"

#include <glib.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <limits>
#include <utility>
#include <vector>

#include "platform/foundation/defaults/DefaultsPlaces.h"
#include "tests/platform/foundation/defaults/SettingsHome.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using ::testing::HasSubstr;
using Dictionary = PropertyList::Dictionary;
using List = PropertyList::List;
using Int64 = std::numeric_limits<std::int64_t>;

class Suite : public ::testing::Test {
  protected:
    std::shared_ptr<UserDefaults> settings_ = UserDefaults::suiteName(newSuiteName());
};

TEST_F(Suite, ReturnsNeutralValuesForAbsentKeys) {
    EXPECT_EQ(settings_->object("key"), std::nullopt);
    EXPECT_EQ(settings_->string("key"), std::nullopt);
    EXPECT_EQ(settings_->integer("key"), 0);
    EXPECT_EQ(settings_->float_("key"), 0.0F);
    EXPECT_FALSE(settings_->bool_("key"));
    EXPECT_EQ(settings_->url("key"), std::nullopt);
    EXPECT_TRUE(settings_->dictionaryRepresentation().empty());
}

TEST_F(Suite, ReturnsWhatWasSet) {
    settings_->set("a text", "text");
    settings_->set(std::string("another"), "string");
    settings_->set(Int64::min(), "integer");
    settings_->set(0.1F, "float");
    settings_->set(0.1, "double");
    settings_->set(true, "truth");
    settings_->set(URL::string("https://example.org/a?b#c"), "address");
    settings_->set(Data{1, 2}, "data");
    settings_->set(List{1, "two", Dictionary{{"three", 3.0}}}, "list");
    settings_->setValue("by key", "value");
    EXPECT_EQ(settings_->string("text"), "a text");
    EXPECT_EQ(settings_->string("string"), "another");
    EXPECT_EQ(settings_->integer("integer"), Int64::min());
    EXPECT_EQ(settings_->float_("float"), 0.1F);
    EXPECT_TRUE(settings_->bool_("truth"));
    EXPECT_EQ(settings_->url("address"), URL::string("https://example.org/a?b#c"));
    EXPECT_EQ(settings_->object("data"), Data({1, 2}));
    EXPECT_EQ(settings_->object("list"), List({1, "two", Dictionary{{"three", 3.0}}}));
    EXPECT_EQ(settings_->dictionaryRepresentation().size(), 10U);
}

TEST_F(Suite, ReplacesAValueByOneOfAnotherKind) {
    settings_->set(5, "key");
    settings_->set("five", "key");
    EXPECT_EQ(settings_->object("key"), "five");
    EXPECT_EQ(settings_->dictionaryRepresentation(), (Dictionary{{"key", "five"}}));
}

TEST_F(Suite, RemovesAKeyInThreeWays) {
    for (const auto* key : {"a", "b", "c", "d"}) {
        settings_->set(1, key);
    }
    settings_->removeObject("a");
    settings_->set(std::optional<PropertyList>(), "b");
    settings_->set(std::optional<URL>(), "c");
    settings_->removeObject("never there");
    EXPECT_EQ(settings_->dictionaryRepresentation(), (Dictionary{{"d", 1}}));
    settings_->set(2, "a");
    EXPECT_EQ(settings_->integer("a"), 2);
}

TEST_F(Suite, AcceptsAnyTextAsAKey) {
    const std::string longKey(5000, 'k');
    for (const auto& key :
         {std::string(), std::string("ä €😀"), longKey, std::string("a'b\"c;--")}) {
        settings_->set(key, key);
        EXPECT_EQ(settings_->string(key), key);
    }
    EXPECT_EQ(settings_->dictionaryRepresentation().size(), 4U);
}

TEST_F(Suite, KeepsTheValueWhenANewOneIsRefused) {
    settings_->set("good", "key");
    const CapturedOutput errors(2);
    settings_->set(std::string("\xFF"), "key");
    settings_->set(1, "bad \xFF key");
    settings_->removeObject("bad \xFF key");
    EXPECT_EQ(settings_->string("key"), "good");
    EXPECT_EQ(settings_->dictionaryRepresentation().size(), 1U);
    EXPECT_THAT(errors.text(), HasSubstr("'key' in "));
    EXPECT_THAT(errors.text(), HasSubstr(" stays as it was: a text in it is not UTF-8 or holds a "
                                         "NUL."));
    EXPECT_THAT(errors.text(), HasSubstr(" stays as it was: its key is not UTF-8 or holds a NUL."));
}

TEST_F(Suite, ReturnsTextForTextOnly) {
    settings_->set(5, "integer");
    settings_->set(true, "truth");
    settings_->set(List{"a"}, "list");
    EXPECT_EQ(settings_->string("integer"), std::nullopt);
    EXPECT_EQ(settings_->string("truth"), std::nullopt);
    EXPECT_EQ(settings_->string("list"), std::nullopt);
}

TEST_F(Suite, ConvertsToIntegers) {
    const std::vector<std::pair<PropertyList, std::int64_t>> cases{
        {true, 1},
        {false, 0},
        {1.9, 1},
        {-1.9, -1},
        {1e19, Int64::max()},
        {-1e19, Int64::min()},
        {0x1p63, Int64::max()},
        {-0x1p63, Int64::min()},
        {std::numeric_limits<double>::quiet_NaN(), 0},
        {"12", 12},
        {" \t-12 apples", -12},
        {"+7", 7},
        {"1.9", 1},
        {"99999999999999999999", Int64::max()},
        {"-99999999999999999999", Int64::min()},
        {"apples", 0},
        {"", 0},
        {"+-5", 0},
        {Data{1}, 0},
        {List{1}, 0},
        {Dictionary{{"a", 1}}, 0},
        {PropertyList::Date(), 0},
    };
    for (const auto& [value, integer] : cases) {
        settings_->set(value, "key");
        EXPECT_EQ(settings_->integer("key"), integer) << description(value);
    }
}

TEST_F(Suite, ConvertsToFloats) {
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    const std::vector<std::pair<PropertyList, double>> cases = {
        {7, 7.0},      {true, 1.0},         {"1.5e3 metres", 1500.0},
        {"-.5", -0.5}, {"1e999", infinity}, {"1e-999", 0.0},
        {"nan", 0.0},  {"infinity", 0.0},   {"", 0.0},
        {"0x10", 0.0}, {List{}, 0.0},       {Data{}, 0.0},
    };
    for (const auto& [value, number] : cases) {
        settings_->set(value, "key");
        EXPECT_EQ(settings_->float_("key"), static_cast<float>(number)) << description(value);
    }
    settings_->set(1e300, "key");
    EXPECT_EQ(settings_->float_("key"), std::numeric_limits<float>::infinity());
    settings_->set(16'777'217, "key");
    EXPECT_EQ(settings_->float_("key"), 16'777'216.0F);
}

TEST_F(Suite, ConvertsToTruthValues) {
    for (const PropertyList& value :
         {PropertyList(1), PropertyList(-1), PropertyList(0.5), PropertyList("YES"),
          PropertyList("true"), PropertyList(" +001"), PropertyList("-7"), PropertyList("yarn")}) {
        settings_->set(value, "key");
        EXPECT_TRUE(settings_->bool_("key")) << description(value);
    }
    for (const PropertyList& value :
         {PropertyList(0), PropertyList(0.0), PropertyList("NO"), PropertyList("false"),
          PropertyList("000"), PropertyList(""), PropertyList("x1"), PropertyList(List{1})}) {
        settings_->set(value, "key");
        EXPECT_FALSE(settings_->bool_("key")) << description(value);
    }
}

TEST_F(Suite, ReadsTextAsAURLOrAPath) {
    settings_->set(URL::fileURLWithPath("/a b/c"), "file");
    EXPECT_EQ(settings_->url("file")->path(), "/a b/c");
    settings_->set("/music/one two.m4a", "path");
    EXPECT_EQ(settings_->url("path"), URL::fileURLWithPath("/music/one two.m4a"));
    settings_->set("~/music", "home");
    EXPECT_EQ(settings_->url("home")->path(), std::string(g_get_home_dir()) + "/music");
    settings_->set("~someone", "tilde");
    EXPECT_EQ(settings_->url("tilde")->path(),
              std::filesystem::current_path().string() + "/~someone");
    settings_->set("", "empty");
    EXPECT_EQ(settings_->url("empty"), std::nullopt);
    settings_->set(5, "number");
    EXPECT_EQ(settings_->url("number"), std::nullopt);
}

TEST_F(Suite, IsSharedByAllStoresOfItsName) {
    const auto name = newSuiteName();
    const auto one = UserDefaults::suiteName(name);
    const auto other = UserDefaults::suiteName(name);
    EXPECT_NE(one, other);
    one->set(1, "key");
    EXPECT_EQ(other->integer("key"), 1);
    EXPECT_EQ(settings_->integer("key"), 0);
}

TEST_F(Suite, KeepsItsValuesWhenItIsClosed) {
    const auto name = newSuiteName();
    UserDefaults::suiteName(name)->set("kept", "key");
    EXPECT_EQ(UserDefaults::suiteName(name)->string("key"), "kept");
}

TEST(RefusedSuite, IsNullWithTheReason) {
    const auto refusal = [](std::string_view name) {
        const CapturedOutput errors(2);
        EXPECT_EQ(UserDefaults::suiteName(name), nullptr);
        return errors.text();
    };
    EXPECT_THAT(refusal(""), HasSubstr("A suite needs a name."));
    EXPECT_THAT(refusal("/etc/passwd"), HasSubstr("The suite name '/etc/passwd' is a path."));
    EXPECT_THAT(refusal("a/b"), HasSubstr("'a/b' is a path."));
    EXPECT_THAT(refusal("."), HasSubstr("'.' is a path."));
    EXPECT_THAT(refusal(".."), HasSubstr("'..' is a path."));
    EXPECT_THAT(refusal("\xFF"), HasSubstr("A suite's name is not UTF-8 text."));
    EXPECT_THAT(refusal(std::string_view("a\0b", 3)), HasSubstr("not UTF-8"));
    EXPECT_THAT(refusal(std::string(300, 'a')), HasSubstr("is too long."));
    EXPECT_THAT(refusal(ownDomainName()), HasSubstr("The suite name '" + ownDomainName() +
                                                    "' is the application's own domain."));
}

TEST(RefusedSuite, IsNullWhenItCannotBeOpened) {
    const auto name = newSuiteName();
    std::filesystem::create_directories(suiteFile(name));
    const CapturedOutput errors(2);
    EXPECT_EQ(UserDefaults::suiteName(name), nullptr);
    EXPECT_THAT(errors.text(), HasSubstr("The suite '" + name + "' cannot be opened: " +
                                         suiteFile(name).string() + " is not a regular file"));
}

// The process has one search list, which earlier tests have filled.
class StandardStore : public ::testing::Test {
  protected:
    static void clear() {
        for (const auto& [key, value] : UserDefaults::standard()->dictionaryRepresentation()) {
            UserDefaults::standard()->removeObject(key);
        }
    }
    void SetUp() override { clear(); }
    void TearDown() override { clear(); }

    std::shared_ptr<UserDefaults> standard_ = UserDefaults::standard();
};

TEST_F(StandardStore, IsOneAndLiesUnderTheApplicationsName) {
    EXPECT_EQ(standard_, UserDefaults::standard());
    standard_->set(1, "own key");
    EXPECT_EQ(standard_->integer("own key"), 1);
    EXPECT_TRUE(std::filesystem::exists(settingsHome() / ownDomainName() / "defaults.sqlite"));
}

TEST_F(StandardStore, SearchesItsOwnDomainThenTheSuitesInOrder) {
    const auto firstName = newSuiteName();
    const auto secondName = newSuiteName();
    const auto first = UserDefaults::suiteName(firstName);
    const auto second = UserDefaults::suiteName(secondName);
    first->set("first", "both");
    second->set("second", "both");
    second->set("second", "one");
    EXPECT_EQ(standard_->string("both"), std::nullopt);

    standard_->addSuiteNamed(secondName);
    EXPECT_EQ(standard_->string("both"), "second");
    standard_->addSuiteNamed(firstName);
    EXPECT_EQ(standard_->string("both"), "second");
    standard_->addSuiteNamed(secondName);
    EXPECT_EQ(standard_->string("both"), "second");

    standard_->set("own", "both");
    EXPECT_EQ(standard_->string("both"), "own");
    EXPECT_EQ(second->string("both"), "second");
    EXPECT_EQ(standard_->dictionaryRepresentation(),
              (Dictionary{{"both", "own"}, {"one", "second"}}));

    standard_->removeObject("both");
    EXPECT_EQ(standard_->string("both"), "second");
    second->removeObject("both");
    EXPECT_EQ(standard_->string("both"), "first");
    EXPECT_EQ(first->dictionaryRepresentation(), (Dictionary{{"both", "first"}}));
}

TEST_F(StandardStore, LeavesOutARefusedSuite) {
    const CapturedOutput errors(2);
    standard_->addSuiteNamed("");
    standard_->addSuiteNamed(ownDomainName());
    EXPECT_THAT(errors.text(), HasSubstr("A suite needs a name."));
    EXPECT_THAT(errors.text(), HasSubstr("is the application's own domain."));
    standard_->set(1, "key");
    EXPECT_EQ(standard_->integer("key"), 1);
}

TEST_F(StandardStore, SearchesSuitesThatAnyStoreAdded) {
    const auto name = newSuiteName();
    UserDefaults::suiteName(name)->set(5, "from a suite");
    UserDefaults::suiteName(newSuiteName())->addSuiteNamed(name);
    EXPECT_EQ(standard_->integer("from a suite"), 5);
}

TEST(SuiteNames, AreTheNamesOfTheUsersSuites) {
    const auto name = newSuiteName();
    const auto before = suiteNames();
    EXPECT_EQ(std::ranges::find(before, name), before.end());
    UserDefaults::suiteName(name);
    const auto after = suiteNames();
    EXPECT_NE(std::ranges::find(after, name), after.end());
    EXPECT_EQ(after.size(), before.size() + 1);
}

}  // namespace
}  // namespace orvalo::testing
