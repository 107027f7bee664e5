#pragma once

#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/effect/ui/EmbeddedPluginUI.h"
#include "tests/effect/ui/HostWindow.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/XServer.h"

namespace orvalo::testing {

/// A host window on an X server that all tests of a program share, for a user without presets.
class WindowFixture : public ::testing::Test {
  protected:
    static XServer& server() {
        static XServer server("1400x1100x24");
        return server;
    }

    WindowFixture() : host((server(), 800), 600) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread.
        setenv("HOME", home.path().c_str(), 1);
    }

    TemporaryFolder home;
    HostWindow host;
};

/// A host window with the plug-in UI embedded and drawn.
class EmbeddedUIFixture : public WindowFixture {
  protected:
    using Parameter = effect::Parameter;
    using Writes = std::vector<PortWrite>;
    using Touches = std::vector<std::string>;

    EmbeddedUIFixture() : pluginUI(host) {
        pluginUI.settle();
        layout = pluginUI.layout();
    }

    const effect::ui::Rect& dial(Parameter parameter) const { return layout.cell(parameter).dial; }
    const effect::ui::Rect& valueText(Parameter parameter) const {
        return layout.cell(parameter).value;
    }
    bool untilWritten(std::size_t count) {
        return pluginUI.idleUntil([&] { return pluginUI.writes.size() >= count; });
    }

    EmbeddedPluginUI pluginUI;
    effect::ui::Layout layout;
};

}  // namespace orvalo::testing
