#pragma once

namespace orvalo {

/// A shared library that is loaded at its first use and stays loaded until the program ends. For
/// libraries that take longer to load than the rest of the start.
class LateLibrary {
  public:
    /// Loads <prefix>/lib/orvalo/<name>.so, which orvalo_late_library() builds, and the libraries
    /// that it is linked with. Throws NSError, with the loader's reason, when one cannot be loaded.
    explicit LateLibrary(const char* name);

    /// The address of a function. A library without that function is a fatal error. Any thread.
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
