#include "platform/foundation/defaults/LogSizes.h"

#include <filesystem>
#include <system_error>

namespace orvalo {

namespace {

std::uintmax_t sizeOf(const std::string& path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    return error ? 0 : size;
}

}  // namespace

LogSizes::LogSizes(const std::string& database)
    : log(sizeOf(database + "-wal")), index(sizeOf(database + "-shm")) {}

}  // namespace orvalo
