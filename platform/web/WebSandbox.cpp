#include "platform/web/WebSandbox.h"

#include <glib.h>

#include <array>
#include <future>
#include <memory>
#include <string_view>

#include "platform/foundation/GLibPointer.h"

namespace orvalo {

namespace {

using Environment = std::unique_ptr<char*, Release<g_strfreev>>;

/// Runs a program that does nothing in the namespaces that the engine uses.
std::optional<std::string> tryOut(const Environment& environment) {
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
    if (g_spawn_sync(nullptr, const_cast<char**>(command.data()), environment.get(), flags, nullptr,
                     nullptr, nullptr, &said, &status, &error) == FALSE) {
        return GErrorPointer(error)->message;
    }
    const GText owner(said);
    if (status == 0) {
        return std::nullopt;
    }
    return g_strchomp(said);
}

bool isOff() {
    const char* value = g_getenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS");
    return value != nullptr && std::string_view(value) != "0";
}

const std::shared_future<std::optional<std::string>>& trial() {
    // A copy of the environment, because the main thread may change its own during the trial.
    static const auto result =
        std::async(std::launch::async, tryOut, Environment(g_get_environ())).share();
    return result;
}

}  // namespace

std::optional<std::string> sandboxProblem() {
    return isOff() ? std::nullopt : trial().get();
}

void tryOutSandbox() {
    if (!isOff()) {
        trial();
    }
}

}  // namespace orvalo
