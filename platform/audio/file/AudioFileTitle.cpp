#include "platform/audio/file/AudioFileTitle.h"

#include <glib.h>

#include <filesystem>

#include "platform/audio/file/AudioContainer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

std::string audioFileTitle(const std::string& path) {
    try {
        const LocalFile file(path);
        const AudioContainer container(file);
        const auto* title =
            lateFFmpeg(av_dict_get)(container.context().metadata, "title", nullptr, 0);
        if (title != nullptr && *title->value != '\0' &&
            g_utf8_validate(title->value, -1, nullptr) != FALSE) {
            return title->value;
        }
    } catch (const NSError&) {
        // The player says what is wrong with the file.
    }
    return std::filesystem::path(path).filename();
}

}  // namespace orvalo
