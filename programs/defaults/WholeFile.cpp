#include "programs/defaults/WholeFile.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostBytes = std::size_t{64} << 20U;

/// An open file; its name is for messages. Everything throws NSError.
class Descriptor {
  public:
    Descriptor(int number, std::string name) : number_(number), name_(std::move(name)) {
        if (number_ < 0) {
            fail(errno);
        }
    }
    ~Descriptor() {
        if (number_ > STDERR_FILENO) {
            close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    /// Some bytes; 0 at the end.
    std::size_t read(char* bytes, std::size_t size) const {
        return checked([&] { return ::read(number_, bytes, size); });
    }
    void writeAll(std::string_view text) const {
        while (!text.empty()) {
            text.remove_prefix(checked([&] { return ::write(number_, text.data(), text.size()); }));
        }
    }
    /// Has what was written survive whatever happens.
    void sync() const {
        checked([&]() -> ssize_t { return fsync(number_); });
    }
    [[noreturn]] void fail(int error) const { throw NSError::posix(error, name_); }

  private:
    template <typename Call>
    std::size_t checked(const Call& call) const {
        ssize_t count = call();
        while (count < 0 && errno == EINTR) {
            count = call();
        }
        if (count < 0) {
            fail(errno);
        }
        return static_cast<std::size_t>(count);
    }

    int number_;
    std::string name_;
};

int openedFile(const std::string& path, int flags) {
    return open(path.c_str(), flags | O_CLOEXEC);
}

/// Whether a file can take the place of what is at the path; not that of a link to nowhere.
bool canBeReplaced(const std::string& path) {
    std::error_code ignored;
    const auto status = fs::status(path, ignored);
    return path != "-" &&
           (fs::is_regular_file(status) || (!fs::exists(status) && !fs::is_symlink(path, ignored)));
}

void replaceFile(const std::string& path, std::string_view text) {
    // Of a link, what it leads to.
    std::error_code ignored;
    const auto place =
        fs::is_symlink(path, ignored) ? fs::weakly_canonical(path, ignored).string() : path;
    auto other = place + ".XXXXXX";
    const Descriptor file(mkostemp(other.data(), O_CLOEXEC), path);  // For its owner's eyes only.
    try {
        file.writeAll(text);
        file.sync();
        if (rename(other.c_str(), place.c_str()) != 0) {
            file.fail(errno);
        }
    } catch (const NSError&) {
        unlink(other.c_str());
        throw;
    }
}

}  // namespace

std::string readWholeFile(const std::string& path) {
    const auto file = path == "-" ? Descriptor(STDIN_FILENO, "standard input")
                                  : Descriptor(openedFile(path, O_RDONLY), path);
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
    const auto file = path == "-" ? Descriptor(STDOUT_FILENO, "standard output")
                                  : Descriptor(openedFile(path, O_WRONLY), path);
    file.writeAll(text);
}

}  // namespace orvalo
