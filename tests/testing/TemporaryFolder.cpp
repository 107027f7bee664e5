#include "tests/testing/TemporaryFolder.h"

#include <system_error>

#include "tests/testing/ProgramFolder.h"

namespace orvalo::testing {

TemporaryFolder::TemporaryFolder() : path_(ProgramFolder::makeFolder()) {}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace orvalo::testing
