#include "bench/measuring/ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace orvalo::bench {

ScratchFolder::ScratchFolder() {
    auto pattern = (std::filesystem::temp_directory_path() / "orvalo-bench-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::system_error(errno, std::generic_category(), pattern);
    }
    path_ = pattern;
}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace orvalo::bench
