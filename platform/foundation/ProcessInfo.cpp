#include "platform/foundation/ProcessInfo.h"

#include <unistd.h>
#include <uuid/uuid.h>

#include <array>

#include "platform/foundation/ExecutablePath.h"

namespace orvalo {

const ProcessInfo& ProcessInfo::processInfo() {
    static const ProcessInfo info;
    return info;
}

// NOLINTNEXTLINE(readability-convert-member-functions-to-static): given as the object's.
std::string ProcessInfo::globallyUniqueString() const {
    // g_uuid_string_random() would return the same texts in this process and its forks.
    // NOLINTNEXTLINE(modernize-avoid-c-arrays): the library's own type.
    uuid_t identifier;
    uuid_generate_random(identifier);
    std::array<char, UUID_STR_LEN> text{};
    uuid_unparse_upper(identifier, text.data());
    return text.data();
}

ProcessInfo::ProcessInfo()
    : processName_(executablePath().filename().string()), processIdentifier_(getpid()) {}

}  // namespace orvalo
