#include "platform/foundation/StateFile.h"

#include <glib/gstdio.h>
#include <sys/stat.h>

#include <cerrno>

#include "platform/foundation/UserFolders.h"

namespace orvalo {

std::filesystem::path stateFile(const std::string& name) {
    return userStateFolder() / "orvalo" / name;
}

void saveStateFile(const std::string& name, const KeyFilePointer& content, const char* what) {
    const auto path = stateFile(name);
    const auto folder = path.parent_path();
    if (g_mkdir_with_parents(folder.c_str(), S_IRWXU) != 0) {
        g_warning("%s is not saved: %s: %s", what, folder.c_str(), g_strerror(errno));
        return;
    }
    gsize length = 0;
    const GText text(g_key_file_to_data(content.get(), &length, nullptr));
    GError* error = nullptr;
    if (g_file_set_contents_full(path.c_str(), text.get(), static_cast<gssize>(length),
                                 G_FILE_SET_CONTENTS_CONSISTENT, S_IRUSR | S_IWUSR,
                                 &error) == FALSE) {
        g_warning("%s is not saved: %s", what, GErrorPointer(error)->message);
    }
}

}  // namespace orvalo
