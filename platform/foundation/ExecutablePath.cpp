#include "platform/foundation/ExecutablePath.h"

#include <string>
#include <string_view>
#include <system_error>

#include "platform/foundation/FatalError.h"

namespace orvalo {

namespace {

std::filesystem::path find() {
    std::error_code failure;
    auto path = std::filesystem::read_symlink("/proc/self/exe", failure).string();
    if (failure) {
        fatalError("/proc/self/exe: " + failure.message());
    }
    // The kernel marks a file that was replaced while the program runs, such as by an update.
    constexpr std::string_view replaced = " (deleted)";
    if (path.ends_with(replaced)) {
        path.resize(path.size() - replaced.size());
    }
    return path;
}

}  // namespace

const std::filesystem::path& executablePath() {
    // Never destroyed: other threads may use it while the process ends.
    static const auto& path = *new const std::filesystem::path(find());
    return path;
}

}  // namespace orvalo
