#pragma once

extern "C" {
#include <libavutil/channel_layout.h>
#include <libavutil/opt.h>
#include <libswresample/swresample.h>
}

#include "platform/foundation/LastingLibrary.h"

namespace orvalo {

/// What is used of libswresample, and of libavutil for it, under its own names. Few rates differ,
/// and with what it needs it takes 3 ms to load, so that it is loaded with the first resampler.
class ResamplerLibrary {
    // The other one needs it.
    LastingLibrary utilities_{"libavutil.so." AV_STRINGIFY(LIBAVUTIL_VERSION_MAJOR)};
    LastingLibrary resampler_{"libswresample.so." AV_STRINGIFY(LIBSWRESAMPLE_VERSION_MAJOR)};

  public:
#define ORVALO_RESAMPLER(name) decltype(::name)* const name = resampler_[#name]
#define ORVALO_UTILITY(name) decltype(::name)* const name = utilities_[#name]
    ORVALO_RESAMPLER(swr_alloc_set_opts2);
    ORVALO_RESAMPLER(swr_convert);
    ORVALO_RESAMPLER(swr_free);
    ORVALO_RESAMPLER(swr_init);
    ORVALO_UTILITY(av_channel_layout_default);
    ORVALO_UTILITY(av_opt_set_double);
    ORVALO_UTILITY(av_opt_set_int);
#undef ORVALO_RESAMPLER
#undef ORVALO_UTILITY
};

/// The library; loaded by the first call. A fatal error when it cannot be. Any thread; where there
/// is a resampler, the render thread too.
const ResamplerLibrary& resampling();

}  // namespace orvalo
