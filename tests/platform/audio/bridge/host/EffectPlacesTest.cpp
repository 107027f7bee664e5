#include "platform/audio/bridge/host/EffectPlaces.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

#include "tests/testing/TemporaryFolder.h"

namespace {

using namespace orvalo;
using namespace orvalo::testing;
using ::testing::Contains;
using ::testing::Not;

namespace fs = std::filesystem;

TEST(EffectPlaces, HaveTheXServerOnlyForAPluginUI) {
    const auto number = std::to_string(getpid());
    const fs::path socket = "/tmp/.X11-unix/X" + number;
    fs::create_directories(socket.parent_path());
    std::ofstream(socket) << "";
    for (const auto& display : {":" + number, ":" + number + ".0", "unix:" + number}) {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread.
        setenv("DISPLAY", display.c_str(), 1);
        EXPECT_THAT(confinedCommand("/bin/true", {}), Not(Contains(socket.string())));
        EXPECT_THAT(confinedCommand("/bin/true", {.hasPluginUI = true}),
                    Contains(socket.string()).Times(2))
            << display;
    }
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread.
    setenv("DISPLAY", ("elsewhere:" + number).c_str(), 1);
    EXPECT_THAT(confinedCommand("/bin/true", {.hasPluginUI = true}),
                Not(Contains(socket.string())));
    fs::remove(socket);
}

TEST(EffectPlaces, HaveTheDesktopsFilesOnlyForAPluginUI) {
    const auto without = confinedCommand("/bin/true", {});
    const auto with = confinedCommand("/bin/true", {.hasPluginUI = true});
    EXPECT_THAT(without, Contains("/etc/passwd").Times(2));
    EXPECT_THAT(without, Not(Contains("/etc/fonts")));
    EXPECT_THAT(with, Contains("/etc/passwd").Times(2));
    EXPECT_THAT(with, Contains("/etc/fonts").Times(2));
}

TEST(EffectPlaces, AreNotMountedTwice) {
    const TemporaryFolder folder;
    const auto bundle = folder.path() / "effects/one.lv2";
    fs::create_directories(bundle);
    fs::create_directory_symlink(bundle, folder.path() / "link.lv2");
    const auto link = folder.path() / "link.lv2";
    const auto command = confinedCommand(
        "/usr/bin/env", {.bundles = {folder.path() / "effects", bundle, link, link}});
    EXPECT_THAT(command, Contains(bundle.parent_path().string()).Times(2));
    // The link's target, and no mount.
    EXPECT_THAT(command, Contains(bundle.string()).Times(1));
    EXPECT_THAT(command, Contains(link.string()).Times(1));
    const auto place = std::ranges::find(command, link.string());
    ASSERT_NE(place, command.end());
    EXPECT_EQ(*(place - 1), bundle.string());
    EXPECT_EQ(*(place - 2), "--symlink");
    // The program, which is below /usr.
    EXPECT_THAT(command, Contains("/usr/bin/env").Times(1));
}

TEST(EffectPlaces, HaveTheFilesThatLinksInABundleLeadTo) {
    const TemporaryFolder folder;
    fs::permissions(folder.path(), fs::perms(0755));
    const auto bundle = folder.path() / "effect.lv2";
    fs::create_directories(bundle / "data");
    fs::create_directories(folder.path() / "elsewhere");
    const auto open = folder.path() / "elsewhere/open";
    const auto secret = folder.path() / "elsewhere/secret";
    std::ofstream(open) << "open";
    std::ofstream(secret) << "secret";
    fs::permissions(secret, fs::perms::owner_all);
    fs::create_symlink("../../elsewhere/open", bundle / "data/open");
    fs::create_symlink(secret, bundle / "secret");
    fs::create_symlink(folder.path() / "elsewhere", bundle / "folder");
    fs::create_symlink("/nowhere", bundle / "dangling");
    const auto command = confinedCommand("/bin/true", {.bundles = {bundle}});
    EXPECT_THAT(command, Contains(bundle.string()).Times(2));
    EXPECT_THAT(command, Contains(open.string()));
    EXPECT_THAT(command, Not(Contains(secret.string())));
    EXPECT_THAT(command, Not(Contains((folder.path() / "elsewhere").string())));
    EXPECT_THAT(command, Not(Contains("/nowhere")));
}

}  // namespace
