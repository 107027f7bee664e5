#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace orvalo {

/// The exception of platform operations. The application catches it where it calls the operation.
class NSError : public std::exception {
  public:
    /// domain: the source, such as "NSPOSIXErrorDomain". code: the domain's number.
    /// localizedDescription: one sentence for the user.
    NSError(std::string domain, std::int64_t code, std::string localizedDescription);

    /// An error of the C library: domain "NSPOSIXErrorDomain", the code, and "<culprit>: " (a path
    /// or a name) before the library's text.
    static NSError posix(int code, const std::string& culprit);

    const std::string& domain() const { return domain_; }
    std::int64_t code() const { return code_; }
    const std::string& localizedDescription() const { return localizedDescription_; }
    /// The localized description.
    const char* what() const noexcept override { return localizedDescription_.c_str(); }

    /// The textual form: "Error Domain=<domain> Code=<code> "<localizedDescription>"".
    std::string description() const;

  private:
    std::string domain_;
    std::int64_t code_;
    // std::runtime_error's copies share their text, but errors pass from thread to thread.
    std::string localizedDescription_;
};

}  // namespace orvalo
