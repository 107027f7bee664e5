#include "platform/audio/signal/ResamplerLibrary.h"

namespace orvalo {

const ResamplerLibrary& resampling() {
    static const auto library = requiredLibrary<ResamplerLibrary>("libswresample");
    return library;
}

}  // namespace orvalo
