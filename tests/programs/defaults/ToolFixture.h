#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/testing/Program.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {

/// The staged orvalo-defaults, with a new configuration folder for every test.
class ToolFixture : public ::testing::Test {
  protected:
    struct End {
        int status = 0;
        std::string output;
        std::string error;
    };

    ToolFixture();

    /// Runs the program to its end.
    End run(const std::vector<std::string>& arguments) const;
    /// Runs a shell command, where "$D" is the program.
    End shell(const std::string& line) const;

    /// The run succeeds without output.
    void expectSilence(const std::vector<std::string>& arguments) const;
    /// The run succeeds and prints exactly this.
    void expectOutput(const std::vector<std::string>& arguments, const std::string& output) const;
    /// The run prints nothing but one line on standard error.
    void expectRefusal(const std::vector<std::string>& arguments, const std::string& line,
                       int status) const;

    /// Writes a file with the text. Returns its path.
    std::string file(const std::string& name, const std::string& text) const;
    std::string path(const std::string& name) const { return (folder.path() / name).string(); }

    TemporaryFolder folder;
    Program::Environment environment;

  private:
    static End ended(Program& program);
};

}  // namespace orvalo::testing
