#include <gtest/gtest.h>

#include <fstream>

#include "platform/foundation/NSError.h"
#include "tests/platform/ui/LayoutFixture.h"
#include "tests/testing/CapturedOutput.h"

namespace orvalo::testing {
namespace {

using Problems = std::vector<std::string>;

class Storyboard : public LayoutFixture {
  protected:
    /// The problems of these objects, without the file's name.
    Problems problemsOf(const std::string& objects) {
        const auto prefix = write(objects) + ": ";
        Problems found;
        const auto storyboard = layout(objects);
        for (const auto& problem : storyboard->problems()) {
            EXPECT_TRUE(problem.starts_with(prefix)) << problem;
            found.push_back(problem.substr(prefix.size()));
        }
        return found;
    }

    /// The text of the error that load() throws.
    static std::string errorOf(const std::string& path) {
        try {
            UIStoryboard::load(URL::fileURLWithPath(path));
        } catch (const NSError& error) {
            return error.localizedDescription();
        }
        return "";
    }
};

TEST_F(Storyboard, HasNoProblemsWhenAllNamesExist) {
    EXPECT_EQ(problemsOf(twoScreens), Problems{});
}

TEST_F(Storyboard, ReportsUnknownClassesOutletsAndActions) {
    EXPECT_EQ(
        problemsOf(R"(
<object class="UIView" id="ThirdScreen"/>
<object class="UIView" id="FirstScreen">
  <child><object class="GtkButton" id="knob"><signal name="clicked" handler="turn"/></object></child>
  <child><object class="GtkButton" id="_own"><signal name="clicked" handler="press"/></object></child>
</object>)"),
        (Problems{"there is no class for the screen \"ThirdScreen\".",
                  "FirstScreen has no outlet \"knob\".", "FirstScreen has no action \"turn\"."}));
}

TEST_F(Storyboard, ReportsInvalidSegues) {
    const auto segue = [](const std::string& name, const std::string& source,
                          const std::string& destination, const std::string& presentation,
                          const std::string& trigger) {
        return "<object class='UIStoryboardSegue'><property name='identifier'>" + name +
               "</property><property name='source'>" + source +
               "</property><property name='destination'>" + destination +
               "</property><property name='presentation'>" + presentation +
               "</property><property name='trigger'>" + trigger + "</property></object>";
    };
    EXPECT_EQ(problemsOf("<object class='UIView' id='FirstScreen'/>"
                         "<object class='UIView' id='SecondScreen'/>" +
                         segue("A", "Nowhere", "SecondScreen", "fullScreen", "") +
                         segue("B", "FirstScreen", "Elsewhere", "fullScreen", "") +
                         segue("C", "FirstScreen", "SecondScreen", "sheet", "") +
                         segue("D", "FirstScreen", "SecondScreen", "fullScreen", "knob")),
              (Problems{"the segue \"A\" leaves from \"Nowhere\", which is no screen.",
                        "the segue \"B\" leads to \"Elsewhere\", which is no screen.",
                        "the segue \"C\" has the presentation \"sheet\", which is unknown.",
                        "the segue \"D\" is taken by \"knob\", which FirstScreen does not have."}));
}

TEST_F(Storyboard, LogsItsProblems) {
    const CapturedOutput errors(2);
    layout("<object class='UIView' id='ThirdScreen'/>");
    EXPECT_NE(errors.text().find("there is no class for the screen \"ThirdScreen\"."),
              std::string::npos)
        << errors.text();
}

TEST_F(Storyboard, NamesAFileThatCannotBeRead) {
    const auto missing = (folder.path() / "None.ui").string();
    EXPECT_NE(errorOf(missing).find(missing), std::string::npos);
    const auto damaged = (folder.path() / "Damaged.ui").string();
    for (const auto* text : {"", "no XML", "<interface><object></interface>", "<interface>"}) {
        std::ofstream(damaged) << text;
        EXPECT_NE(errorOf(damaged).find(damaged), std::string::npos) << text;
    }
}

TEST_F(Storyboard, StartsWithItsFirstScreen) {
    const auto controller = layout(twoScreens)->instantiateInitialViewController();
    EXPECT_NE(std::dynamic_pointer_cast<FirstScreen>(controller), nullptr);
    EXPECT_FALSE(controller->isViewLoaded());
    EXPECT_NE(controller, layout(twoScreens)->instantiateInitialViewController());
}

TEST_F(Storyboard, FindsItsSegues) {
    const auto storyboard = layout(twoScreens);
    const auto* segue = storyboard->segue("FirstScreen", "ShowSecond");
    ASSERT_NE(segue, nullptr);
    EXPECT_EQ(segue->destination, "SecondScreen");
    EXPECT_EQ(segue->presentation, "fullScreen");
    EXPECT_EQ(segue->trigger, "button");
    EXPECT_EQ(storyboard->segue("SecondScreen", "ShowSecond"), nullptr);
    EXPECT_EQ(storyboard->segue("FirstScreen", "Other"), nullptr);
}

using StoryboardDeathTest = Storyboard;

TEST_F(StoryboardDeathTest, NeedsAnInitialScreen) {
    EXPECT_EXIT(layout("")->instantiateInitialViewController(), ::testing::KilledBySignal(SIGABRT),
                "Fatal error: .*Test\\.ui has no screen\\.");
    EXPECT_EXIT(
        layout("<object class='UIView' id='ThirdScreen'/>")->instantiateInitialViewController(),
        ::testing::KilledBySignal(SIGABRT),
        "Fatal error: .*Test\\.ui: there is no screen of the class \"ThirdScreen\"\\.");
}

}  // namespace
}  // namespace orvalo::testing
