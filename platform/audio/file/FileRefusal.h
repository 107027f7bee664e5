#pragma once

#include <cstdint>
#include <string>

#include "platform/foundation/NSError.h"

namespace orvalo {

/// Why a readable file is not opened: the codes of "AVAudioFileErrorDomain".
enum class FileRefusal : std::int64_t {
    notRegular = 1,
    empty,
    unknownKind,
    brokenHeader,
    noAudio,
    noDecoder,
    notDecodable,
    tooManyChannels,
    rateOutOfRange,
    noLength,
    shorterThanStated,
    noLibrary,
};

/// The error "<path>: <reason>".
inline NSError refusal(FileRefusal code, const std::string& path, const std::string& reason) {
    return {"AVAudioFileErrorDomain", static_cast<std::int64_t>(code), path + ": " + reason};
}

}  // namespace orvalo
