#include "platform/audio/file/FileRefusal.h"

namespace orvalo {

NSError refusal(FileRefusal code, const std::string& path, const std::string& reason) {
    return {"AVAudioFileErrorDomain", static_cast<std::int64_t>(code), path + ": " + reason};
}

}  // namespace orvalo
