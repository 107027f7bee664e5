#pragma once

#include <sys/stat.h>

#include <string>

namespace orvalo {

/// Which file it is, whatever its name.
struct FileIdentity {
    dev_t device = 0;
    ino_t number = 0;

    FileIdentity() = default;
    explicit FileIdentity(const struct stat& status)
        : device(status.st_dev), number(status.st_ino) {}

    /// Whether the path leads to this file.
    bool isAt(const std::string& path) const {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 && status.st_dev == device &&
               status.st_ino == number;
    }
};

}  // namespace orvalo
