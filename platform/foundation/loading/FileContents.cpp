#include "platform/foundation/loading/FileContents.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor() {
        if (number_ >= 0) {
            close(number_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int number() const { return number_; }

  private:
    int number_;
};

}  // namespace

Data contentsOfFile(const std::string& path) {
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (file.number() < 0) {
        throw NSError::posix(errno, path);
    }
    Data content;
    std::array<std::uint8_t, std::size_t{64} * 1024> piece{};
    for (;;) {
        const auto count = read(file.number(), piece.data(), piece.size());
        if (count < 0 && errno != EINTR) {
            throw NSError::posix(errno, path);
        }
        if (count == 0) {
            return content;
        }
        if (count > 0) {
            content.insert(content.end(), piece.begin(), piece.begin() + count);
        }
    }
}

}  // namespace orvalo
