// The program orvalo-easing, used by pointer, keyboard and assistive technology.
#include <gmock/gmock.h>

#include <X11/Xlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "animation/EasingCurve.h"
#include "animation/EasingFormula.h"
#include "tests/app/AccessibleTree.h"
#include "tests/app/Screenshot.h"
#include "tests/testing/Desktop.h"
#include "tests/testing/Lines.h"
#include "tests/testing/Program.h"
#include "tests/testing/SessionBus.h"
#include "tests/testing/Staged.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSupersetOf;
using ::testing::Not;

constexpr auto kStillness =
    "The desktop asks for less motion: only the end of each movement is shown.";

void write(const std::filesystem::path& file, const std::string& text) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

void key(const std::string& name) {
    act({"key", name});
}

/// Types a number into the field with these shortcut keys.
void enter(const std::string& keys, const std::string& number) {
    key(keys);
    act({"type", number});
}

/// The text on the clipboard; "" when no program offers one.
std::string clipboard() {
    const std::unique_ptr<Display, int (*)(Display*)> server(XOpenDisplay(nullptr), XCloseDisplay);
    const auto atom = [&](const char* name) { return XInternAtom(server.get(), name, False); };
    const auto window =
        XCreateSimpleWindow(server.get(), DefaultRootWindow(server.get()), 0, 0, 1, 1, 0, 0, 0);
    const auto place = atom("ORVALO_TEST");
    XConvertSelection(server.get(), atom("CLIPBOARD"), atom("UTF8_STRING"), place, window,
                      CurrentTime);
    XEvent answer;
    if (!pollUntil([&] {
            return XCheckTypedWindowEvent(server.get(), window, SelectionNotify, &answer) != False;
        })) {
        return "";
    }
    Atom type = None;
    int width = 0;
    unsigned long size = 0;
    unsigned long left = 0;
    unsigned char* bytes = nullptr;
    constexpr long mostWords = 4096;
    XGetWindowProperty(server.get(), window, place, 0, mostWords, True, AnyPropertyType, &type,
                       &width, &size, &left, &bytes);
    const std::unique_ptr<unsigned char, int (*)(void*)> owned(bytes, XFree);
    return bytes == nullptr ? "" : std::string(bytes, bytes + size);
}

class EasingWindowTest : public ::testing::Test {
  protected:
    EasingWindowTest() {
        startDesktop();
        startSessionBus();
    }

    ~EasingWindowTest() override {
        if (program) {
            EXPECT_EQ(end(), 0);
        }
    }

    void open() {
        program = std::make_unique<Program>(std::vector<std::string>{staged("orvalo-easing")},
                                            environment);
        act({"mousemove", "2", "2"});
        activateWindow("^Orvalo Easing$");
    }

    /// Opens the program on the Groups page, which has fewer widgets to search, stopped and with
    /// the shortest duration.
    void openGroups() {
        open();
        enter("alt+d", "0.2");
        key("alt+2");
        EXPECT_TRUE(waitForName("Play"));
    }

    /// Closes the window with its shortcut and returns the exit status.
    int end() {
        key("ctrl+q");
        const auto running = std::exchange(program, nullptr);
        const int status = running->wait();
        EXPECT_EQ(running->standardError(), "");
        return status;
    }

    bool isThere(const std::string& name) const {
        const auto names = easing.names();
        return std::find(names.begin(), names.end(), name) != names.end();
    }

    /// Waits until the window shows that name; false after a minute.
    bool waitForName(const std::string& name) const {
        return pollUntil([this, &name] { return isThere(name); });
    }

    /// The desktop's settings, as files of this user.
    void setToolkit(const std::string& text) const {
        write(folder.path() / "config/gtk-4.0/settings.ini", "[Settings]\n" + text + "\n");
    }
    void setDesktop(const std::string& text) const {
        write(folder.path() / "config/glib-2.0/settings/keyfile",
              "[org/gnome/desktop/interface]\n" + text + "\n");
    }

    const TemporaryFolder folder;
    const Program::Environment environment{
        {"GTK_A11Y", "atspi"},
        {"GSETTINGS_BACKEND", "keyfile"},
        {"XDG_CONFIG_HOME", (folder.path() / "config").string()}};
    std::unique_ptr<Program> program;
    const AccessibleTree easing{"orvalo-easing"};
};

TEST_F(EasingWindowTest, NamesEveryCurveAndEveryControl) {
    open();
    enter("alt+d", "0.2");
    EXPECT_TRUE(waitForName("Curves"));
    Lines expected{"Curves", "Groups", "Impulse", "Duration", "Interval", "Repeat"};
    for (std::size_t number = 0; number < easingCount; ++number) {
        expected.push_back(easingName(static_cast<EnumEasing>(number)));
    }
    EXPECT_THAT(easing.names(), IsSupersetOf(expected));
    // The program plays once after its start, so the button becomes "Play" again.
    EXPECT_TRUE(waitForName("Play"));
    key("alt+3");
    EXPECT_TRUE(waitForName("Amount"));
    EXPECT_THAT(easing.names(), IsSupersetOf({"Amount", "Intensity", "Bounds", "Lower", "Upper"}));
}

TEST_F(EasingWindowTest, ChangesThePictureWhilePlaying) {
    openGroups();
    key("alt+r");
    key("F5");
    EXPECT_TRUE(waitForName("Stop"));
    const Screenshot seen;
    EXPECT_TRUE(pollUntil([&seen] { return Screenshot() != seen; }));
}

TEST_F(EasingWindowTest, RepeatsUntilItIsStopped) {
    openGroups();
    key("alt+r");
    key("F5");
    EXPECT_TRUE(waitForName("Stop"));
    key("F5");
    EXPECT_TRUE(waitForName("Play"));
}

TEST_F(EasingWindowTest, FollowsAssistiveTechnology) {
    openGroups();
    // Assistive technology needs time to read a line that is shown for a sixth of this.
    enter("alt+d", "2");
    EXPECT_TRUE(easing.press("Repeat"));
    EXPECT_TRUE(easing.press("Play"));
    EXPECT_TRUE(waitForName("The stack has finished."));
    // The stack runs again without a press.
    EXPECT_TRUE(waitForName("Number 1 has ended and is removed, 4 left."));
    EXPECT_TRUE(easing.press("Stop"));
    EXPECT_TRUE(waitForName("Play"));
}

TEST_F(EasingWindowTest, ArrowKeysChooseACurveAtOneTabStop) {
    open();
    // The run that starts by itself must be over.
    EXPECT_TRUE(waitForName("Play"));
    // Assistive technology needs time to read the button while the next one lasts.
    enter("alt+d", "10");
    for (const auto* name : {"Tab", "Tab", "Tab"}) {
        key(name);
    }
    // From the button past the three pages to the curves; InOutCubic is chosen.
    for (const auto* name : {"Tab", "Tab", "Tab", "Tab", "Right", "End", "Up", "Home", "Down",
                             "Right", "Right", "Right", "Left", "space"}) {
        key(name);
    }
    // Past the buttons that copy, duration, interval and repetition back to the button.
    for (const auto* name : {"Tab", "Tab", "Tab", "Tab", "Tab", "Tab", "space"}) {
        key(name);
    }
    EXPECT_TRUE(waitForName("Stop"));
    key("alt+2");
    EXPECT_TRUE(waitForName("All follow easeInOutQuart, as chosen under Curves."));
}

TEST_F(EasingWindowTest, CopiesTheNameAndTheFormulaOfTheChosenCurve) {
    open();
    EXPECT_TRUE(waitForName("Play"));
    key("alt+n");
    EXPECT_TRUE(waitForName("The name is copied."));
    EXPECT_EQ(clipboard(), "easeInOutCubic");
    EXPECT_TRUE(easing.press("Copy Formula"));
    EXPECT_TRUE(waitForName("The formula is copied."));
    EXPECT_EQ(clipboard(), easingFormula(EnumEasing::EASING_easeInOutCubic));
    EXPECT_TRUE(isThere(clipboard()));
}

TEST_F(EasingWindowTest, TellsWhichCurvesAreOddOnPurpose) {
    open();
    EXPECT_TRUE(waitForName("Play"));
    const auto names = easing.names();
    EXPECT_EQ(std::count(names.begin(), names.end(), "odd"), 4);
    EXPECT_TRUE(easing.press("easeOutQuart"));
    EXPECT_TRUE(waitForName("Odd on purpose. It starts at b + 2c and falls to b + c."));
    key("alt+f");
    EXPECT_TRUE(waitForName("The formula is copied."));
    EXPECT_EQ(clipboard(), "u = t / d - 1; c * (u * u * u * u + 1) + b");
}

TEST_F(EasingWindowTest, RunsEveryKindOfGroupToItsEnd) {
    openGroups();
    EXPECT_TRUE(isThere("All follow easeInOutCubic, as chosen under Curves."));
    for (const auto& [kind, choice] :
         {std::pair("stack", "alt+t"), {"chain", "alt+c"}, {"sequencer", "alt+q"}}) {
        key(choice);
        key("F5");
        EXPECT_TRUE(waitForName("The " + std::string(kind) + " has finished.")) << kind;
        EXPECT_TRUE(waitForName("Play"));
    }
}

TEST_F(EasingWindowTest, PlaysUntilTheMembersOfAnAsynchronousChainHaveEnded) {
    openGroups();
    key("alt+c");
    EXPECT_TRUE(waitForName("Asynchronous"));
    key("alt+a");
    key("F5");
    EXPECT_TRUE(waitForName("The chain has finished."));
    EXPECT_TRUE(waitForName("Play"));
}

TEST_F(EasingWindowTest, ShowsTheResultOfAPush) {
    open();
    key("alt+3");
    EXPECT_TRUE(waitForName("Push"));
    enter("alt+i", "1");
    key("F5");
    EXPECT_TRUE(waitForName("Ended after 308 ticks with 2 collisions."));
    key("alt+b");
    enter("alt+a", "24");
    EXPECT_TRUE(waitForName("Push"));
    key("F5");
    EXPECT_TRUE(waitForName("Ended after 331 ticks with 0 collisions."));
}

TEST_F(EasingWindowTest, ShowsOnlyTheEndWhenGtkAsksForReducedMotion) {
    setToolkit("gtk-enable-animations=0");
    openGroups();
    EXPECT_TRUE(isThere(kStillness));
    const Screenshot before;
    key("F5");
    EXPECT_TRUE(waitForName("All have ended."));
    EXPECT_THAT(easing.names(), Not(Contains("Stop")));
    EXPECT_TRUE(pollUntil([&before] { return Screenshot() != before; }));
    key("alt+3");
    EXPECT_TRUE(waitForName("Push"));
    key("F5");
    EXPECT_TRUE(waitForName("Ended after 308 ticks with 2 collisions."));
    EXPECT_THAT(easing.names(), Not(Contains("Stop")));
}

TEST_F(EasingWindowTest, FollowsTheDesktopsReducedMotionSettingWhileRunning) {
    setDesktop("enable-animations=true");
    openGroups();
    EXPECT_THAT(easing.names(), Not(Contains(kStillness)));
    setDesktop("enable-animations=false");
    EXPECT_TRUE(waitForName(kStillness));
    EXPECT_TRUE(waitForName("Play"));
    setDesktop("enable-animations=true");
    EXPECT_TRUE(pollUntil([this] { return !isThere(kStillness); }));
}

struct Answer {
    int status;
    Lines output;
    std::string error;
};

Answer answerTo(const std::string& option, const Program::Environment& environment = {}) {
    Program program({staged("orvalo-easing"), option}, environment);
    const auto output = program.readAll();
    const int status = program.wait();
    return {status, output, program.standardError()};
}

TEST(EasingOptions, NeedNoDisplay) {
    const Program::Environment bare{{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}};
    const auto help = answerTo("--help", bare);
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.output, Contains(HasSubstr("orvalo-easing [OPTION")));
    EXPECT_THAT(help.output, Contains(HasSubstr("--version")));
    const auto version = answerTo("--version", bare);
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.output, Lines{"orvalo-easing " ORVALO_VERSION});
}

TEST(EasingOptions, AreRefusedByName) {
    const auto unknown = answerTo("--colour");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.error, "orvalo-easing: Unknown option --colour\n");
    const auto stray = answerTo("curve");
    EXPECT_EQ(stray.status, 2);
    EXPECT_EQ(stray.error, "orvalo-easing: 'curve' is no option.\n");
}

TEST(EasingOptions, PrintALineWithoutADisplay) {
    Program program({staged("orvalo-easing")}, {{"DISPLAY", ""}, {"WAYLAND_DISPLAY", ""}});
    EXPECT_EQ(program.wait(), 1);
    EXPECT_THAT(program.standardError(), HasSubstr("There is no display to show a window on."));
}

}  // namespace

}  // namespace orvalo::testing
