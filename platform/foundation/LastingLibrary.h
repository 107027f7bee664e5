#pragma once

#include <string>

#include "platform/foundation/FatalError.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

/// A shared library that stays loaded until the program ends.
class LastingLibrary {
  public:
    /// Converts to a pointer to the function that it is.
    class Symbol {
      public:
        explicit Symbol(void* address) : address_(address) {}
        template <typename Function>
        operator Function*() const {
            return reinterpret_cast<Function*>(address_);
        }

      private:
        void* address_;
    };

    /// name: as the loader knows it, such as "libm.so.6". Throws NSError, whose text is the
    /// loader's, when it cannot be loaded.
    explicit LastingLibrary(const std::string& name);
    /// Throws NSError when the library has no such function.
    Symbol operator[](const char* function) const;

  private:
    void* handle_;
};

/// A Library, whose making loads LastingLibraries and finds their functions. A fatal error,
/// "<name> cannot be loaded: <reason>", when one is missing.
template <typename Library>
Library requiredLibrary(const std::string& name) {
    try {
        return Library();
    } catch (const NSError& error) {
        fatalError(name + " cannot be loaded: " + error.what());
    }
}

}  // namespace orvalo
