#include "platform/foundation/FileManager.h"

#include <glib.h>
#include <glib/gstdio.h>

#include <cerrno>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

// The umask removes what the user does not want to grant.
constexpr int directoryMode = 0777;

}  // namespace

// NOLINTBEGIN(readability-convert-member-functions-to-static): given as the shared object's.
FileManager& FileManager::default_() {
    static FileManager manager;
    return manager;
}

std::vector<URL> FileManager::urls(SearchPathDirectory /*for_*/,
                                   SearchPathDomainMask /*in*/) const {
    const char* documents = g_get_user_special_dir(G_USER_DIRECTORY_DOCUMENTS);
    return {URL::fileURLWithPath(documents == nullptr ? g_get_home_dir() : documents)};
}

bool FileManager::fileExists(const std::string& atPath) const {
    return g_file_test(atPath.c_str(), G_FILE_TEST_EXISTS) != FALSE;
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
