#pragma once

#include <string>
#include <vector>

#include "platform/foundation/URL.h"

namespace orvalo {

enum class SearchPathDirectory { documentDirectory };
enum class SearchPathDomainMask { userDomainMask };

/// The file system. Any thread.
class FileManager {
  public:
    static FileManager& default_();

    /// The user's directories of a kind, best first. Documents: the XDG documents directory, else
    /// the home directory, which is "/" for a user without one; never empty.
    std::vector<URL> urls(SearchPathDirectory for_, SearchPathDomainMask in) const;

    /// Whether an item of any kind is there; a dangling link is not.
    bool fileExists(const std::string& atPath) const;

    /// Creates a directory, with its missing parents when withIntermediateDirectories (an existing
    /// directory is then no error), with the platform's default permissions. Throws NSError.
    void createDirectory(const URL& at, bool withIntermediateDirectories);

  private:
    FileManager() = default;
};

}  // namespace orvalo
