#include "platform/foundation/FileManager.h"

#include <glib.h>
#include <glib/gstdio.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/foundation/NSError.h"
#include "platform/foundation/UserFolders.h"

namespace orvalo {

namespace {

// The umask takes away what the user does not want to give.
constexpr int directoryMode = 0777;

}  // namespace

// NOLINTBEGIN(readability-convert-member-functions-to-static): they are the shared object's.
FileManager& FileManager::default_() {
    static FileManager manager;
    return manager;
}

std::vector<URL> FileManager::urls(SearchPathDirectory /*for_*/,
                                   SearchPathDomainMask /*in*/) const {
    return {URL::fileURLWithPath(userDocumentsFolder().value_or(g_get_home_dir()).string())};
}

bool FileManager::fileExists(const std::string& atPath) const {
    struct stat status {};
    return stat(atPath.c_str(), &status) == 0;
}

void FileManager::createDirectory(const URL& at, bool withIntermediateDirectories) {
    if (!at.isFileURL()) {
        throw NSError::posix(EINVAL, at.absoluteString());
    }
    const auto& path = at.path();
    const int result = withIntermediateDirectories
                           ? g_mkdir_with_parents(path.c_str(), directoryMode)
                           : g_mkdir(path.c_str(), directoryMode);
    if (result != 0) {
        throw NSError::posix(errno, path);
    }
}
// NOLINTEND(readability-convert-member-functions-to-static)

}  // namespace orvalo
