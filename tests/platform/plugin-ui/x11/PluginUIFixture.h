#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/plugin-ui/x11/LV2EmbeddedPluginUI.h"
#include "platform/plugin-ui/x11/LV2PluginUILibrary.h"
#include "tests/platform/plugin-ui/x11/Effects.h"
#include "tests/platform/plugin-ui/x11/Pointer.h"
#include "tests/platform/plugin-ui/x11/Screen.h"
#include "tests/platform/plugin-ui/x11/Toplevel.h"
#include "tests/testing/WaitUntil.h"

namespace orvalo::testing {

/// A UI of 400 x 300 in a toplevel, at (150, 140) on the screen.
class PluginUIFixture : public ::testing::Test {
  protected:
    static constexpr X11Rect kArea{50, 40, 400, 300};

    PluginUIFixture() : display_(screen()), record_(uiRecord()) {
        movePointer(5, 5);
        resetRecord();
    }
    ~PluginUIFixture() override {
        embedded_ = nullptr;
        EXPECT_EQ(record_.cleanups, record_.instantiations);
        EXPECT_FALSE(record_.wasMappedAtCleanup);
    }

    void open(const std::string& name = "probe", bool isVisible = true) {
        unit_ = makeUnit(name);
        const auto data = readUIData(*unit_);
        library_ = std::make_unique<LV2PluginUILibrary>(data);
        connection_ = X11Connection::open("");
        embedded_ = std::make_unique<LV2EmbeddedPluginUI>(
            connection_, unit_, data,
            EmbeddedPluginUI::Parent{toplevel_.window(), 2.0, kArea.size(), nullptr});
        embedded_->onClosed = [this](const std::string& reason) {
            closed_.push_back(reason);
            embedded_ = nullptr;
        };
        embedded_->place(kArea, kArea);
        embedded_->setVisible(isVisible);
    }

    void commit(zoo::Misdeed misdeed) {
        record_.misdeed = misdeed;
        ASSERT_TRUE(pollUntil([this] { return record_.misdeed == zoo::Misdeed::none; }));
    }

    Display* display_;
    zoo::UIRecord& record_;
    Toplevel toplevel_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    std::unique_ptr<LV2PluginUILibrary> library_;
    std::shared_ptr<X11Connection> connection_;
    std::unique_ptr<LV2EmbeddedPluginUI> embedded_;
    std::vector<std::string> closed_;
};

}  // namespace orvalo::testing
