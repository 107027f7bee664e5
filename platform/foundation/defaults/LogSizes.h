#pragma once

#include <cstdint>
#include <string>

namespace orvalo {

/// How many bytes lie beside a database, in its log and the log's index; 0 where there is none.
struct LogSizes {
    explicit LogSizes(const std::string& database);
    bool operator==(const LogSizes& other) const = default;

    std::uintmax_t log;
    std::uintmax_t index;
};

}  // namespace orvalo
