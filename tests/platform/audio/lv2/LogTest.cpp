#include "platform/audio/lv2/LV2Log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/audio/lv2/URIDMap.h"
#include "platform/foundation/RealTimeScope.h"
#include "tests/testing/CapturedOutput.h"

namespace {

using namespace orvalo;
using orvalo::testing::CapturedOutput;
using ::testing::HasSubstr;

TEST(Log, WritesEntriesWithThePluginsURI) {
    const CapturedOutput output(2);
    LV2Log log("urn:test:plugin");
    auto& feature = log.feature();
    feature.printf(feature.handle, LV2URIDs::shared().logError, "%s %d\n", "broken", 7);
    feature.printf(feature.handle, 0, "as it is");
    EXPECT_THAT(output.text(), HasSubstr("WARNING **"));
    EXPECT_THAT(output.text(), HasSubstr("<urn:test:plugin>: broken 7\n"));
    EXPECT_THAT(output.text(), HasSubstr("<urn:test:plugin>: as it is\n"));
    EXPECT_THAT(output.text(), HasSubstr("Message"));
}

TEST(Log, WritesEntriesFromTheRenderThreadBeforeDestruction) {
    const CapturedOutput output(2);
    {
        LV2Log log("urn:test:rendering");
        const RealTimeScope scope;
        auto& feature = log.feature();
        feature.printf(feature.handle, 0, "block %d", 12);
        feature.printf(feature.handle, 0, "%s", std::string(5000, 'x').c_str());
    }
    EXPECT_THAT(output.text(), HasSubstr("<urn:test:rendering>: block 12\n"));
    EXPECT_THAT(output.text(), HasSubstr(": " + std::string(479, 'x') + "\n"));
}

TEST(Log, CountsDroppedEntries) {
    const CapturedOutput output(2);
    {
        LV2Log log("urn:test:flood");
        // Whether or not the writing thread keeps up, each entry is written or counted.
        const RealTimeScope scope;
        for (int entry = 0; entry < 5000; ++entry) {
            log.write(0, "entry");
        }
    }
    const auto text = output.text();
    int written = 0;
    for (auto at = text.find("entry\n"); at != std::string::npos;
         at = text.find("entry\n", at + 1)) {
        ++written;
    }
    int lost = 0;
    constexpr const char* kEnd = " log entries of plug-ins were dropped";
    for (auto at = text.find(kEnd); at != std::string::npos; at = text.find(kEnd, at + 1)) {
        lost += std::stoi(text.substr(text.rfind(' ', at - 1) + 1));
    }
    EXPECT_EQ(written + lost, 5000);
}

}  // namespace
