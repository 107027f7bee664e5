#pragma once

#include <cstdint>
#include <exception>
#include <string>

namespace orvalo {

/// What a platform operation that can fail throws. Never crosses the boundary of the platform's
/// callers: the application catches it where the operation is called.
class NSError : public std::exception {
  public:
    /// domain: who reports, such as "NSPOSIXErrorDomain"; code: the domain's number;
    /// localizedDescription: one sentence for people.
    NSError(std::string domain, std::int64_t code, std::string localizedDescription);

    /// An error of the C library: domain "NSPOSIXErrorDomain", the code and its own text, with the
    /// culprit (a path, a name) in front.
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
    // Not the standard library's, whose copies share their text: an error goes from thread to
    // thread.
    std::string localizedDescription_;
};

}  // namespace orvalo
