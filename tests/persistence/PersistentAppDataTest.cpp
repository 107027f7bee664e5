#include "persistence/PersistentAppData.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>
#include <vector>

#include "support/FileLocations.h"
#include "tests/heart/FatalEnd.h"
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

TEST_F(PersistentAppDataTest, ATextIsTextOnly) {
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

TEST_F(PersistentAppDataTest, TruthValuesAreTruthValues) {
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
    std::vector<std::thread> threads;
    for (int count = 0; count < 8; ++count) {
        threads.emplace_back(
            [this] { EXPECT_EQ(PersistentAppData::sharedInstance().get(), &data); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
}

/// Notes what is called, in place of doing it.
class Noting : public PersistentAppData {
  public:
    mutable std::string called;

    void setString(const std::string& key, const std::string& value, Storage) override {
        called += key + "=" + value + ";";
    }
    std::optional<std::string> getString(const std::string& key, Storage) const override {
        called += key + "?;";
        return "noted";
    }
    void dumpout() const override { called += "dump;"; }
};

TEST_F(PersistentAppDataTest, OperationsCanBeOverridden) {
    const auto noting = std::make_shared<Noting>();
    const std::shared_ptr<PersistentAppData> base = noting;
    base->setString("a", "b");
    EXPECT_EQ(base->getString("c"), "noted");
    base->dumpout();
    EXPECT_EQ(noting->called, "a=b;c?;dump;");
    EXPECT_EQ(data.getString("a"), std::nullopt);
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
