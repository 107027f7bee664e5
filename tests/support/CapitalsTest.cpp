#include "support/Capitals.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "platform/foundation/GLibPointer.h"
#include "support/UniqueName.h"

namespace orvalo {
namespace {

std::string joined() {
    std::string result;
    for (const auto& name : capitals) {
        result.append(name).append("\n");
    }
    return result;
}

TEST(Capitals, AreAHundredAndNinetySeven) {
    EXPECT_EQ(capitals.size(), 197U);
    EXPECT_EQ(capitals.front(), "Kabul");
    EXPECT_EQ(capitals.back(), "Harare");
}

TEST(Capitals, MatchTheirChecksum) {
    // Of all names in UTF-8, each followed by a line feed.
    const auto text = joined();
    const GText sum(g_compute_checksum_for_string(G_CHECKSUM_SHA256, text.data(),
                                                  static_cast<gssize>(text.size())));
    EXPECT_STREQ(sum.get(), "8e47bd3f5523845f1824ea7e8d16d34a6ee60374a27a5c9b044cd82035761175");
}

TEST(Capitals, FollowTheOrderOfTheCountries) {
    EXPECT_EQ(capitals[44], "Copenagen");
    EXPECT_EQ(capitals[29], "Yaoundé");
    EXPECT_EQ(capitals[80], "Jerusalem");
    EXPECT_EQ(capitals[184], "Kiev");
    EXPECT_EQ(capitals[187], "Washington D.C.");
}

TEST(Capitals, KeepTheirSpelling) {
    for (const auto* name :
         {"Copenagen", "Kiev", "Washington D.C.", "Sri Jayawardenapura Kotte", "East Jerusalem",
          "Yaoundé", "San José", "Reykjavík", "Malé", "Asunción", "São Tomé", "Lomé", "St. John's",
          "N'Djamena", "Sana'a", "Port-au-Prince"}) {
        EXPECT_EQ(std::ranges::count(capitals, name), 1) << name;
    }
}

TEST(Capitals, AreAConstantListOfTexts) {
    const std::vector<std::string>& list = capitals;
    EXPECT_EQ(&list[44], &capitals[44]);
}

TEST(Capitals, AreMadeAtTheirFirstUse) {
    // Nothing is to be made when the program starts.
    EXPECT_TRUE(std::is_empty_v<Capitals>);
    EXPECT_TRUE(std::is_trivially_default_constructible_v<Capitals>);
    std::vector<const std::string*> first(4);
    std::vector<std::thread> threads;
    threads.reserve(first.size());
    for (auto& place : first) {
        threads.emplace_back([&place] { place = &capitals.front(); });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::ranges::count(first, &capitals.front()), 4);
}

TEST(Capitals, NameWhatIsUnique) {
    const auto name = uniqueName(capitals[44]);
    EXPECT_EQ(name.substr(0, 10), "Copenagen-");
    EXPECT_NE(uniqueName(capitals[44]), name);
}

TEST(Capitals, AreUnique) {
    EXPECT_EQ(std::set(capitals.begin(), capitals.end()).size(), capitals.size());
}

}  // namespace
}  // namespace orvalo
