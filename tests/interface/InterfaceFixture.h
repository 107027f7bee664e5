#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/audio/interface/LV2EmbeddedInterface.h"
#include "platform/audio/interface/LV2InterfaceLibrary.h"
#include "tests/interface/Effects.h"
#include "tests/interface/Pointer.h"
#include "tests/interface/Screen.h"
#include "tests/interface/Toplevel.h"

namespace orvalo::testing {

/// An interface open in a plain window, 400 x 300 at (50, 40) in it: (150, 140) on the screen.
class InterfaceFixture : public ::testing::Test {
  protected:
    static constexpr X11Rect kArea{50, 40, 400, 300};

    InterfaceFixture() : display_(screen()), record_(interfaceRecord()) {
        movePointer(5, 5);
        resetRecord();
    }
    ~InterfaceFixture() override {
        embedded_ = nullptr;
        EXPECT_EQ(record_.cleanups, record_.instantiations);
        EXPECT_FALSE(record_.wasMappedAtCleanup);
    }

    void open(const std::string& name = "probe", bool isVisible = true) {
        unit_ = makeUnit(name);
        const auto data = readInterface(*unit_);
        library_ = std::make_unique<LV2InterfaceLibrary>(data);
        connection_ = X11Connection::open("");
        embedded_ = std::make_unique<LV2EmbeddedInterface>(
            connection_, unit_, data,
            LV2EmbeddedInterface::Place{toplevel_.window(), 2.0, kArea.size(), nullptr});
        embedded_->onClosed = [this](const std::string& reason) {
            closed_.push_back(reason);
            embedded_ = nullptr;
        };
        embedded_->place(kArea, kArea);
        embedded_->setVisible(isVisible);
    }

    void commit(zoo::Misdeed misdeed) {
        record_.misdeed = misdeed;
        ASSERT_TRUE(waitFor([this] { return record_.misdeed == zoo::Misdeed::none; }));
    }

    Display* display_;
    zoo::InterfaceRecord& record_;
    Toplevel toplevel_;
    std::shared_ptr<LV2LocalAudioUnit> unit_;
    std::unique_ptr<LV2InterfaceLibrary> library_;
    std::shared_ptr<X11Connection> connection_;
    std::unique_ptr<LV2EmbeddedInterface> embedded_;
    std::vector<std::string> closed_;
};

}  // namespace orvalo::testing
