#include "tests/programs/defaults/ToolFixture.h"

#include <fstream>

#include "tests/testing/Staged.h"

namespace orvalo::testing {

ToolFixture::ToolFixture() {
    environment["XDG_CONFIG_HOME"] = path("config");
    environment["LC_ALL"] = "C.UTF-8";
    environment["D"] = staged("orvalo-defaults");
}

ToolFixture::End ToolFixture::ended(Program& program) {
    End end;
    for (const auto& line : program.readAll()) {
        end.output += line + "\n";
    }
    end.status = program.wait();
    end.error = program.standardError();
    return end;
}

ToolFixture::End ToolFixture::run(const std::vector<std::string>& arguments) const {
    auto command = arguments;
    command.insert(command.begin(), staged("orvalo-defaults"));
    Program program(command, environment);
    return ended(program);
}

ToolFixture::End ToolFixture::shell(const std::string& line) const {
    Program program({"/bin/sh", "-c", line}, environment);
    return ended(program);
}

void ToolFixture::expectSilence(const std::vector<std::string>& arguments) const {
    expectOutput(arguments, "");
}

void ToolFixture::expectOutput(const std::vector<std::string>& arguments,
                               const std::string& output) const {
    const auto end = run(arguments);
    EXPECT_EQ(end.output, output);
    EXPECT_EQ(end.error, "");
    EXPECT_EQ(end.status, 0);
}

void ToolFixture::expectRefusal(const std::vector<std::string>& arguments, const std::string& line,
                                int status) const {
    const auto end = run(arguments);
    EXPECT_EQ(end.error, "orvalo-defaults: " + line + "\n");
    EXPECT_EQ(end.output, "");
    EXPECT_EQ(end.status, status);
}

std::string ToolFixture::file(const std::string& name, const std::string& text) const {
    std::ofstream(path(name), std::ios::binary) << text;
    return path(name);
}

}  // namespace orvalo::testing
