#include "platform/web/WebSandbox.h"

#include <glib.h>

#include <array>
#include <string_view>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

/// Runs a program that does nothing in namespaces such as the engine makes them.
std::optional<std::string> tryOut() {
    std::array command{"bwrap",
                       "--unshare-all",
                       "--ro-bind",
                       "/",
                       "/",
                       "--dev",
                       "/dev",
                       "--proc",
                       "/proc",
                       "true",
                       static_cast<const char*>(nullptr)};
    constexpr auto flags =
        static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL);
    char* said = nullptr;
    int status = 0;
    GError* error = nullptr;
    if (g_spawn_sync(nullptr, const_cast<char**>(command.data()), nullptr, flags, nullptr, nullptr,
                     nullptr, &said, &status, &error) == FALSE) {
        std::string problem = error->message;
        g_error_free(error);
        return problem;
    }
    const GText owner(said);
    if (status == 0) {
        return std::nullopt;
    }
    return g_strchomp(said);
}

}  // namespace

std::optional<std::string> sandboxProblem() {
    const char* isOff = g_getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS");
    if (isOff != nullptr && std::string_view(isOff) != "0") {
        return std::nullopt;
    }
    static const auto problem = tryOut();
    return problem;
}

}  // namespace orvalo
