#pragma once

#include <string>

namespace orvalo {

/// Renames a damaged database, with the log and its index, to a name that nothing has, says so on
/// standard error and leaves its place free. Throws NSError when it cannot be renamed. The caller
/// holds the domain's lock.
void setDatabaseAside(const std::string& path);

/// The same of a log and its index whose database is gone. Never fails.
void setLogAside(const std::string& path);

}  // namespace orvalo
