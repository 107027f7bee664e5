#include "tests/testing/ProgramFolder.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace orvalo::testing {

namespace {

constexpr const char* kVariable = "ORVALO_TEST_FOLDER";

}  // namespace

ProgramFolder::ProgramFolder() {
    if (std::getenv(kVariable) == nullptr) {
        made_ = makeFolder();
        // As open as /tmp: some tests change to another user.
        std::filesystem::permissions(
            made_, std::filesystem::perms::all | std::filesystem::perms::sticky_bit);
        setenv(kVariable, made_.c_str(), 1);
    }
}

ProgramFolder::~ProgramFolder() {
    if (!made_.empty()) {
        unsetenv(kVariable);
        std::error_code ignored;
        std::filesystem::remove_all(made_, ignored);
    }
}

std::filesystem::path ProgramFolder::makeFolder() {
    // Short, because paths of sockets inside are limited to 107 bytes.
    const char* programs = std::getenv(kVariable);
    const auto pattern = programs != nullptr
                             ? std::filesystem::path(programs) / "XXXXXX"
                             : std::filesystem::temp_directory_path() / "orvalo-XXXXXX";
    auto path = pattern.string();
    if (mkdtemp(path.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), path);
    }
    return path;
}

}  // namespace orvalo::testing
