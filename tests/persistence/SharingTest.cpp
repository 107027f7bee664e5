#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/persistence/PersistenceFixture.h"
#include "tests/testing/TemporaryFolder.h"

// Several processes, and the first use of the persistent data in a process.

namespace orvalo::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

class SharingTest : public PersistenceFixture {
  protected:
    std::vector<std::string> fresh(const std::vector<std::string>& words) {
        const PeerRun run(words, folder.path().string());
        EXPECT_EQ(run.status, 0) << run.error;
        return run.output;
    }

    TemporaryFolder folder;
};

TEST_F(SharingTest, TheGroupIsSharedWithEveryProcess) {
    EXPECT_EQ(data.getString("key", Storage::shared), std::nullopt);
    EXPECT_THAT(PeerRun({"set", "1", "key", "theirs"}).error, IsEmpty());
    EXPECT_EQ(data.getString("key", Storage::shared), "theirs");
    EXPECT_EQ(data.getString("key", Storage::combined), "theirs");
    data.setString("key", "ours", Storage::shared);
    EXPECT_THAT(PeerRun({"get", "1", "key", "get", "2", "key"}).output,
                ElementsAre("ours", "ours"));
}

TEST_F(SharingTest, ValuesOutliveTheProcess) {
    fresh({"set", "0", "own", "a", "set", "1", "group's", "b", "set", "2", "combined", "c"});
    EXPECT_THAT(fresh({"get", "0", "own", "get", "1", "group's", "get", "0", "combined"}),
                ElementsAre("a", "b", "c"));
    EXPECT_THAT(fresh({"get", "1", "own", "get", "1", "combined"}),
                ElementsAre("nothing", "nothing"));
}

TEST_F(SharingTest, TheFirstUseOfTheInstanceChangesTheStandardStore) {
    fresh({"set", "1", "key", "group's"});
    EXPECT_THAT(fresh({"standard", "key", "instance", "standard", "key"}),
                ElementsAre("nothing", "group's"));
}

TEST_F(SharingTest, ThreadsThatMakeTheInstanceAtOnceGetTheSameOne) {
    for (int round = 0; round < 10; ++round) {
        EXPECT_THAT(fresh({"instances", "8"}), ElementsAre("1"));
    }
}

TEST_F(SharingTest, TheFirstUseOfTheCombinedViewChangesTheStandardStore) {
    fresh({"set", "1", "key", "group's"});
    EXPECT_THAT(fresh({"standard", "key", "combined", "standard", "key"}),
                ElementsAre("nothing", "group's"));
}

TEST_F(SharingTest, EveryUseOfTheCombinedViewAddsTheCurrentGroup) {
    fresh({"group", "com.example.late", "set", "1", "key", "late"});
    EXPECT_THAT(fresh({"instance", "standard", "key", "group", "com.example.late", "standard",
                       "key", "combined", "standard", "key"}),
                ElementsAre("nothing", "nothing", "late"));
}

TEST_F(SharingTest, ARefusedGroupEndsTheProgramAtTheInstance) {
    const PeerRun run({"group", "a/b", "instance"}, folder.path().string());
    EXPECT_EQ(run.status, -SIGABRT);
    EXPECT_THAT(run.error, EndsWith("Fatal error: Unexpectedly found nil while unwrapping an "
                                    "Optional value\n"));
}

TEST_F(SharingTest, ADumpOfFreshStoresIsTheThreeHeaders) {
    EXPECT_THAT(fresh({"dump"}),
                ElementsAre("PersistentAppData::dumpout() : UserDefaults.standard : ",
                            "PersistentAppData::dumpout() : UserDefaults.shared : ",
                            "PersistentAppData::dumpout() : UserDefaults.combined : "));
}

TEST_F(SharingTest, ADumpUsesTheCurrentGroup) {
    fresh({"group", "com.example.late", "set", "1", "late", "1"});
    EXPECT_THAT(
        fresh({"set", "1", "early", "2", "group", "com.example.late", "dump"}),
        ElementsAre("PersistentAppData::dumpout() : UserDefaults.standard : ", "early = 2 ", "",
                    "PersistentAppData::dumpout() : UserDefaults.shared : ", "late = 1 ", "",
                    "PersistentAppData::dumpout() : UserDefaults.combined : ", "early = 2 ", "",
                    "late = 1 ", ""));
}

}  // namespace
}  // namespace orvalo::testing
