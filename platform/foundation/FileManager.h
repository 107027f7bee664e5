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

    /// The user's directories of a kind; never empty. Documents: the XDG documents directory, else
    /// the home directory.
    std::vector<URL> urls(SearchPathDirectory for_, SearchPathDomainMask in) const;

    /// Whether an item of any kind exists. False for a dangling link.
    bool fileExists(const std::string& atPath) const;

    /// Creates a directory with the default permissions. withIntermediateDirectories: with its
    /// missing parents; an existing directory is no error then. Throws NSError.
    void createDirectory(const URL& at, bool withIntermediateDirectories);

  private:
    FileManager() = default;
};

}  // namespace orvalo
