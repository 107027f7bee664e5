#pragma once

namespace orvalo {

/// A shared library that is loaded at its first use and stays loaded until the program ends. For
/// libraries whose loading takes longer than the rest of a start.
class LateLibrary {
  public:
    /// Loads <prefix>/lib/orvalo/<name>.so, which orvalo_late_library() makes in CMake, and all
    /// that it is linked with. A fatal error, "<name> cannot be loaded: <reason>", when one is
    /// missing.
    explicit LateLibrary(const char* name);

    /// The address of a function. A fatal error when the library has none of this name. Any thread.
    void* function(const char* name) const;

  private:
    void* handle_;
};

}  // namespace orvalo

/// The function of this name in the LateLibrary, with its declared type; found at the first call.
#define ORVALO_LATE_FUNCTION(library, name)                                 \
    ([] {                                                                   \
        static auto* const address =                                        \
            reinterpret_cast<decltype(&(name))>((library).function(#name)); \
        return address;                                                     \
    }())
