#include "app/defaults/WholeFile.h"

#include <fcntl.h>
#include <glib.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <filesystem>
#include <memory>
#include <system_error>

#include "app/defaults/format/Escaped.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = std::size_t{64} << 20U;
constexpr int kForOwner = 0600;

/// An open file, or a standard one that stays open.
class Descriptor {
  public:
    Descriptor(const std::string& path, int flags, int standard)
        : name_(path == "-" ? (standard == STDIN_FILENO ? "standard input" : "standard output")
                            : escaped(path)),
          number_(path == "-" ? standard : open(path.c_str(), flags | O_CLOEXEC)),
          isOurs_(path != "-") {
        if (number_ < 0) {
            fail();
        }
    }
    ~Descriptor() {
        if (isOurs_) {
            close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    /// Some bytes; 0 at the end.
    std::size_t read(char* bytes, std::size_t size) const {
        return checked([&] { return ::read(number_, bytes, size); });
    }
    /// Writes some of the bytes.
    std::size_t write(std::string_view bytes) const {
        return checked([&] { return ::write(number_, bytes.data(), bytes.size()); });
    }
    [[noreturn]] void fail(int error = errno) const { throw NSError::posix(error, name_); }

  private:
    template <typename Call>
    std::size_t checked(const Call& call) const {
        ssize_t count = call();
        while (count < 0 && errno == EINTR) {
            count = call();
        }
        if (count < 0) {
            fail();
        }
        return static_cast<std::size_t>(count);
    }

    std::string name_;
    int number_;
    bool isOurs_;
};

/// Whether a file can take the place of what is at the path.
bool canBeReplaced(const std::string& path) {
    std::error_code ignored;
    const auto status = fs::status(path, ignored);
    return path != "-" && (!fs::exists(status) || fs::is_regular_file(status));
}

void replaceFile(const std::string& path, std::string_view text) {
    // Of a link, what it leads to.
    std::error_code ignored;
    const auto place =
        fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored) : fs::path(path);
    GError* failure = nullptr;
    if (g_file_set_contents_full(place.c_str(), text.data(), static_cast<gssize>(text.size()),
                                 G_FILE_SET_CONTENTS_CONSISTENT, kForOwner, &failure) == FALSE) {
        const std::unique_ptr<GError, Release<g_error_free>> error(failure);
        throw NSError("NSPOSIXErrorDomain", error->code, escaped(error->message));
    }
}

}  // namespace

std::string readWholeFile(const std::string& path) {
    const Descriptor file(path, O_RDONLY, STDIN_FILENO);
    std::string text;
    std::array<char, 65536> piece{};
    while (const auto count = file.read(piece.data(), piece.size())) {
        if (text.size() + count > kMostBytes) {
            file.fail(EFBIG);
        }
        text.append(piece.data(), count);
    }
    return text;
}

void writeWholeFile(const std::string& path, std::string_view text) {
    if (canBeReplaced(path)) {
        replaceFile(path, text);
        return;
    }
    const Descriptor file(path, O_WRONLY, STDOUT_FILENO);
    while (!text.empty()) {
        text.remove_prefix(file.write(text));
    }
}

}  // namespace orvalo
