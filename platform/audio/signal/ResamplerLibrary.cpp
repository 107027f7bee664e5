#include "platform/audio/signal/ResamplerLibrary.h"

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

const ResamplerLibrary& resampling() {
    static const ResamplerLibrary library = [] {
        try {
            return ResamplerLibrary();
        } catch (const NSError& error) {
            fatalError(std::string("libswresample cannot be loaded: ") + error.what());
        }
    }();
    return library;
}

}  // namespace orvalo
