#include "platform/audio/lv2/TurtleFile.h"

#include <fcntl.h>
#include <glib.h>
#include <serd/serd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>

namespace orvalo {

namespace {

// Data of the largest plug-ins known have about two megabytes.
constexpr std::size_t kLargestData = 64U << 20U;

class Descriptor {
  public:
    explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
    ~Descriptor() {
        if (descriptor_ >= 0) {
            close(descriptor_);
        }
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

SerdStatus onError(void* handle, const SerdError* error) {
    auto& first = *static_cast<std::string*>(handle);
    if (first.empty()) {
        // GLib's formatting takes the library's va_list.
        gchar* message = g_strdup_vprintf(error->fmt, *error->args);
        first = "line " + std::to_string(error->line) + ": " + g_strchomp(message);
        g_free(message);
    }
    return SERD_SUCCESS;
}

}  // namespace

std::optional<std::string> readTurtle(const std::filesystem::path& path, std::size_t limit) {
    // Non-blocking, as a pipe in the file's place must not hold the program up.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (file.get() < 0) {
        if (errno != ENOENT && errno != ENOTDIR) {
            g_warning("%s cannot be read: %s.", path.c_str(), g_strerror(errno));
        }
        return std::nullopt;
    }
    struct stat status {};
    if (fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) {
        g_warning("%s is no file.", path.c_str());
        return std::nullopt;
    }
    if (static_cast<std::uint64_t>(status.st_size) > limit) {
        g_warning("%s is too large.", path.c_str());
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    std::size_t have = 0;
    while (have < bytes.size()) {
        const auto count = read(file.get(), bytes.data() + have, bytes.size() - have);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            g_warning("%s cannot be read: %s.", path.c_str(), g_strerror(errno));
            return std::nullopt;
        }
        if (count == 0) {
            break;
        }
        have += static_cast<std::size_t>(count);
    }
    bytes.resize(have);
    return bytes;
}

std::string turtleError(const std::string& text) {
    if (text.find('\0') != std::string::npos) {
        return "it holds a null character";
    }
    std::string error;
    const std::unique_ptr<SerdReader, decltype(&serd_reader_free)> reader(
        serd_reader_new(SERD_TURTLE, &error, nullptr, nullptr, nullptr, nullptr, nullptr),
        serd_reader_free);
    // Otherwise the reader skips what it cannot read, and at the end of the text for ever.
    serd_reader_set_strict(reader.get(), true);
    serd_reader_set_error_sink(reader.get(), onError, &error);
    const auto status =
        serd_reader_read_string(reader.get(), reinterpret_cast<const std::uint8_t*>(text.c_str()));
    if (status > SERD_FAILURE && error.empty()) {
        error = reinterpret_cast<const char*>(serd_strerror(status));
    }
    return error;
}

std::string turtleFileError(const std::string& uri) {
    gchar* path = g_filename_from_uri(uri.c_str(), nullptr, nullptr);
    if (path == nullptr) {
        return "it is no file of this machine";
    }
    const auto text = readTurtle(path, kLargestData);
    g_free(path);
    return text ? turtleError(*text) : "it is missing";
}

}  // namespace orvalo
