#include "persistence/PersistentAppData.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "support/FileLocations.h"
#include "tests/Audio Engine/FatalEnd.h"
#include "tests/persistence/PersistenceFixture.h"

namespace orvalo::testing {
namespace {

class PersistentAppDataTest : public PersistenceFixture {};

TEST_F(PersistentAppDataTest, AMissingKeyGivesTheNeutralValues) {
    for (const auto storage : {Storage::defaults, Storage::shared, Storage::combined}) {
        EXPECT_EQ(data.getString("none", storage), std::nullopt);
        EXPECT_EQ(data.getInteger("none", storage), 0);
        EXPECT_EQ(data.getFloat("none", storage), 0.0F);
        EXPECT_FALSE(data.getBool("none", storage));
        EXPECT_EQ(data.getUrl("none", storage), std::nullopt);
        EXPECT_EQ(data.getObject("none", storage), std::nullopt);
    }
}

TEST_F(PersistentAppDataTest, GetStringReturnsTextOnly) {
    data.setString("text", "São Tomé\n\"\\ ");
    EXPECT_EQ(data.getString("text"), "São Tomé\n\"\\ ");
    data.setString("empty", "");
    EXPECT_EQ(data.getString("empty"), "");
    data.setInteger("number", 5);
    EXPECT_EQ(data.getString("number"), std::nullopt);
    data.setObject("list", PropertyList::List{"text"});
    EXPECT_EQ(data.getString("list"), std::nullopt);
}

TEST_F(PersistentAppDataTest, IntegersHave64Bits) {
    for (const std::int64_t number : {INT64_MIN, std::int64_t{-1}, std::int64_t{0}, INT64_MAX}) {
        data.setInteger("number", number);
        EXPECT_EQ(data.getInteger("number"), number);
    }
}

TEST_F(PersistentAppDataTest, FloatsAreKeptExactly) {
    for (const float number :
         {0.1F, -0.0F, std::numeric_limits<float>::max(), std::numeric_limits<float>::denorm_min(),
          -std::numeric_limits<float>::infinity()}) {
        data.setFloat("number", number);
        EXPECT_EQ(data.getFloat("number"), number);
        EXPECT_EQ(std::signbit(data.getFloat("number")), std::signbit(number));
    }
    data.setFloat("number", std::nanf(""));
    EXPECT_TRUE(std::isnan(data.getFloat("number")));
}

TEST_F(PersistentAppDataTest, TruthValuesStayTruthValues) {
    data.setBool("truth", true);
    EXPECT_TRUE(data.getBool("truth"));
    EXPECT_EQ(data.getObject("truth"), PropertyList(true));
    data.setBool("truth", false);
    EXPECT_FALSE(data.getBool("truth"));
    EXPECT_EQ(data.getObject("truth"), PropertyList(false));
}

TEST_F(PersistentAppDataTest, AnAbsentAddressRemovesTheKey) {
    const auto address = URL::string("https://a.example/b%20c?d#e");
    data.setURL("address", address);
    EXPECT_EQ(data.getUrl("address"), address);
    data.setURL("address", std::nullopt);
    EXPECT_EQ(data.getUrl("address"), std::nullopt);
    EXPECT_EQ(data.getObject("address"), std::nullopt);
}

TEST_F(PersistentAppDataTest, AnAbsentObjectRemovesTheKey) {
    const PropertyList::Dictionary nested{
        {"list", PropertyList::List{1, 2.5, "three", false}},
        {"data", Data{0, 255}},
        {"date", PropertyList::Date{std::chrono::microseconds{1'700'000'000'000'001}}},
        {"inner", PropertyList::Dictionary{{"", PropertyList::List{}}}}};
    data.setObject("object", nested);
    EXPECT_EQ(data.getObject("object"), PropertyList(nested));
    data.setObject("object", std::nullopt);
    EXPECT_EQ(data.getObject("object"), std::nullopt);
}

TEST_F(PersistentAppDataTest, ThereIsOneInstance) {
    constexpr std::size_t kThreads = 8;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    while (threads.size() < kThreads) {
        threads.emplace_back(
            [this] { EXPECT_EQ(PersistentAppData::sharedInstance().get(), &data); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

/// Records the calls instead of doing them.
class Noting : public PersistentAppData {
  public:
    mutable std::string called;

    void setString(const std::string& key, const std::string& value, Storage _for) override {
        note("setString", key, _for) += value;
    }
    std::optional<std::string> getString(const std::string& key, Storage from) const override {
        note("getString", key, from);
        return "noted";
    }
    void setInteger(const std::string& key, std::int64_t value, Storage _for) override {
        note("setInteger", key, _for) += std::to_string(value);
    }
    std::int64_t getInteger(const std::string& key, Storage from) const override {
        note("getInteger", key, from);
        return 1;
    }
    void setFloat(const std::string& key, float value, Storage _for) override {
        note("setFloat", key, _for) += description(value);
    }
    float getFloat(const std::string& key, Storage from) const override {
        note("getFloat", key, from);
        return 2.5F;
    }
    void setBool(const std::string& key, bool value, Storage _for) override {
        note("setBool", key, _for) += value ? "true" : "false";
    }
    bool getBool(const std::string& key, Storage from) const override {
        note("getBool", key, from);
        return true;
    }
    void setURL(const std::string& key, const std::optional<URL>& value, Storage _for) override {
        note("setURL", key, _for) += value ? value->absoluteString() : "absent";
    }
    std::optional<URL> getUrl(const std::string& key, Storage from) const override {
        note("getUrl", key, from);
        return URL::string("noted:");
    }
    void setObject(const std::string& key, const std::optional<PropertyList>& value,
                   Storage _for) override {
        note("setObject", key, _for) += value ? description(*value) : "absent";
    }
    std::optional<PropertyList> getObject(const std::string& key, Storage from) const override {
        note("getObject", key, from);
        return 3;
    }
    void dumpout() const override { called += "\ndumpout"; }

  private:
    std::string& note(const std::string& operation, const std::string& key, Storage storage) const {
        return called += "\n" + operation + " " + key + " " +
                         std::to_string(static_cast<std::int64_t>(storage)) + " ";
    }
};

TEST_F(PersistentAppDataTest, EveryOperationCanBeOverridden) {
    const auto noting = std::make_shared<Noting>();
    const std::shared_ptr<PersistentAppData> base = noting;
    base->setString("a", "text");
    EXPECT_EQ(base->getString("b", Storage::shared), "noted");
    base->setInteger("c", -5, Storage::combined);
    EXPECT_EQ(base->getInteger("d"), 1);
    base->setFloat("e", 0.5F, Storage::shared);
    EXPECT_EQ(base->getFloat("f", Storage::combined), 2.5F);
    base->setBool("g", true);
    EXPECT_TRUE(base->getBool("h", Storage::shared));
    base->setURL("i", std::nullopt, Storage::combined);
    EXPECT_EQ(base->getUrl("j"), URL::string("noted:"));
    base->setObject("k", 7, Storage::shared);
    EXPECT_EQ(base->getObject("l", Storage::combined), PropertyList(3));
    base->dumpout();
    EXPECT_EQ(noting->called,
              "\nsetString a 0 text\ngetString b 1 \nsetInteger c 2 -5\ngetInteger d 0 "
              "\nsetFloat e 1 0.5\ngetFloat f 2 \nsetBool g 0 true\ngetBool h 1 "
              "\nsetURL i 2 absent\ngetUrl j 0 \nsetObject k 1 7\ngetObject l 2 \ndumpout");
    EXPECT_TRUE(standard->dictionaryRepresentation().empty());
}

TEST_F(PersistentAppDataTest, TheDataAndItsStoresAreObjects) {
    EXPECT_TRUE((std::is_base_of_v<NSObject, PersistentAppData>));
    EXPECT_TRUE((std::is_base_of_v<NSObject, UserDefaults>));
}

TEST_F(PersistentAppDataTest, AGroupThatIsRefusedEndsTheProgram) {
    EXPECT_FATAL_ERROR(
        {
            sharedContainer = "../elsewhere";
            UserDefaultsViews::shared();
        },
        kFoundNil);
    EXPECT_FATAL_ERROR(
        {
            sharedContainer.clear();
            data.dumpout();
        },
        kFoundNil);
}

TEST(UserDefaultsViews, TheSharedViewIsANewStoreAtEveryCall) {
    EXPECT_NE(UserDefaultsViews::shared(), UserDefaultsViews::shared());
}

TEST(UserDefaultsViews, TheCombinedViewIsTheStandardStore) {
    EXPECT_EQ(UserDefaultsViews::combined(), UserDefaults::standard());
    EXPECT_EQ(UserDefaultsViews::combined(), UserDefaultsViews::combined());
}

}  // namespace
}  // namespace orvalo::testing
