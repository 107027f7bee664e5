#include <gtest/gtest.h>

#include "tests/persistence/PersistenceFixture.h"

namespace orvalo::testing {
namespace {

using Storage = PersistentAppData::Storage;

TEST(Storage, HasThreeRawValues) {
    EXPECT_EQ(static_cast<std::int64_t>(Storage::defaults), 0);
    EXPECT_EQ(static_cast<std::int64_t>(Storage::shared), 1);
    EXPECT_EQ(static_cast<std::int64_t>(Storage::combined), 2);
    EXPECT_EQ(PersistentAppData::storage(0), Storage::defaults);
    EXPECT_EQ(PersistentAppData::storage(1), Storage::shared);
    EXPECT_EQ(PersistentAppData::storage(2), Storage::combined);
}

TEST(Storage, NoOtherRawValueIsAView) {
    for (const std::int64_t raw : {std::int64_t{-1}, std::int64_t{3}, INT64_MIN, INT64_MAX}) {
        EXPECT_EQ(PersistentAppData::storage(raw), std::nullopt) << raw;
    }
}

TEST(Storage, IsHashable) {
    EXPECT_NE(std::hash<Storage>()(Storage::shared), std::hash<Storage>()(Storage::combined));
}

class ViewTest : public PersistenceFixture {
  protected:
    /// Sets a value with every setter.
    void setEach(Storage storage) {
        data.setString("text", "a", storage);
        data.setInteger("number", -7, storage);
        data.setFloat("float", 0.5F, storage);
        data.setBool("truth", true, storage);
        data.setURL("address", address, storage);
        data.setObject("object", PropertyList::List{1, "b"}, storage);
    }
    /// Expects that value from every getter.
    void expectEach(Storage storage) {
        EXPECT_EQ(data.getString("text", storage), "a");
        EXPECT_EQ(data.getInteger("number", storage), -7);
        EXPECT_EQ(data.getFloat("float", storage), 0.5F);
        EXPECT_TRUE(data.getBool("truth", storage));
        EXPECT_EQ(data.getUrl("address", storage), address);
        EXPECT_EQ(data.getObject("object", storage), PropertyList(PropertyList::List{1, "b"}));
    }

    const std::optional<URL> address = URL::string("https://a.example/");
    const PropertyList::Dictionary each{{"text", "a"},
                                        {"number", -7},
                                        {"float", 0.5},
                                        {"truth", true},
                                        {"address", "https://a.example/"},
                                        {"object", PropertyList::List{1, "b"}}};
};

TEST_F(ViewTest, WithoutAStorageTheStandardStoreIsUsed) {
    group->set("theirs", "key");
    data.setString("key", "ours");
    EXPECT_EQ(standard->string("key"), "ours");
    EXPECT_EQ(group->string("key"), "theirs");
    EXPECT_EQ(data.getString("key"), "ours");

    data.setInteger("number", 1);
    data.setFloat("float", 2.5F);
    data.setBool("truth", true);
    data.setURL("address", URL::string("https://a.example/"));
    data.setObject("object", PropertyList::List{1});
    EXPECT_EQ(standard->integer("number"), data.getInteger("number"));
    EXPECT_EQ(standard->float_("float"), data.getFloat("float"));
    EXPECT_EQ(standard->bool_("truth"), data.getBool("truth"));
    EXPECT_EQ(standard->url("address"), data.getUrl("address"));
    EXPECT_EQ(standard->object("object"), data.getObject("object"));
    EXPECT_EQ(group->dictionaryRepresentation().size(), 1U);
}

TEST_F(ViewTest, EveryOperationWorksOnTheSharedView) {
    setEach(Storage::shared);
    EXPECT_EQ(group->dictionaryRepresentation(), each);
    expectEach(Storage::shared);
    for (const auto& [key, value] : each) {
        group->removeObject(key);
    }
    EXPECT_TRUE(standard->dictionaryRepresentation().empty());
}

TEST_F(ViewTest, EveryOperationWorksOnTheCombinedView) {
    setEach(Storage::combined);
    EXPECT_TRUE(group->dictionaryRepresentation().empty());
    EXPECT_EQ(standard->dictionaryRepresentation(), each);
    expectEach(Storage::combined);
}

TEST_F(ViewTest, EveryOperationWorksOnTheStandardView) {
    setEach(Storage::defaults);
    EXPECT_TRUE(group->dictionaryRepresentation().empty());
    EXPECT_EQ(standard->dictionaryRepresentation(), each);
    expectEach(Storage::defaults);
}

TEST_F(ViewTest, TheCombinedViewFallsBackOnTheGroup) {
    data.setString("key", "group's", Storage::shared);
    EXPECT_EQ(data.getString("key", Storage::combined), "group's");
    data.setString("key", "own", Storage::defaults);
    EXPECT_EQ(data.getString("key", Storage::combined), "own");
    EXPECT_EQ(data.getString("key", Storage::shared), "group's");
    data.setObject("key", std::nullopt, Storage::combined);
    EXPECT_EQ(data.getString("key", Storage::combined), "group's");
}

TEST_F(ViewTest, TheStandardViewFallsBackOnTheGroupAsWell) {
    data.setInteger("key", 5, Storage::shared);
    EXPECT_EQ(data.getInteger("key"), 5);
    EXPECT_EQ(standard->integer("key"), 5);
}

TEST_F(ViewTest, TheSharedViewDoesNotReadTheOwnDomain) {
    data.setString("key", "own");
    EXPECT_EQ(data.getString("key", Storage::shared), std::nullopt);
}

TEST_F(ViewTest, AWriteToTheCombinedViewChangesTheOwnDomain) {
    data.setString("key", "group's", Storage::shared);
    data.setString("key", "combined", Storage::combined);
    EXPECT_EQ(group->string("key"), "group's");
    EXPECT_EQ(standard->string("key"), "combined");
}

TEST_F(ViewTest, AnyOtherStorageIsTheCombinedView) {
    const auto other = static_cast<Storage>(7);
    data.setString("key", "written", other);
    EXPECT_EQ(standard->string("key"), "written");
    EXPECT_EQ(group->string("key"), std::nullopt);
    group->set("group's", "other");
    EXPECT_EQ(data.getString("other", other), "group's");
}

}  // namespace
}  // namespace orvalo::testing
