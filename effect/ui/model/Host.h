#pragma once

#include "effect/dsp/Parameter.h"

namespace orvalo::effect::ui {

/// What the interface tells its host.
class Host {
  public:
    Host() = default;
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// A parameter has a new value.
    virtual void write(Parameter parameter, float value) = 0;
    /// A parameter was taken hold of, or let go.
    virtual void grab(Parameter parameter, bool held) = 0;

  protected:
    ~Host() = default;
};

}  // namespace orvalo::effect::ui
