#include "platform/audio/bridge/wire/SharedAudio.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <new>

#include "platform/foundation/NSError.h"

namespace orvalo {

namespace {

// A lock would be one of this process alone.
static_assert(std::atomic<float>::is_always_lock_free &&
              std::atomic<std::int32_t>::is_always_lock_free &&
              std::atomic<std::uint32_t>::is_always_lock_free);

constexpr const char* kName = "orvalo-effect-audio";
constexpr std::size_t kChannelSize = kMaximumOfflineFrames * sizeof(float);

constexpr std::size_t aligned(std::size_t size) {
    constexpr std::size_t kCacheLine = 64;
    return (size + kCacheLine - 1) / kCacheLine * kCacheLine;
}

std::size_t sizeOf(const SharedAudio::Layout& layout) {
    const std::size_t channels =
        std::size_t{layout.inputChannelCount} + std::size_t{layout.outputChannelCount};
    return aligned(sizeof(SharedAudio::Control)) + channels * kChannelSize +
           SharedAudio::kEventAreaSize + aligned(layout.portCount * sizeof(std::atomic<float>));
}

}  // namespace

SharedAudio SharedAudio::make(const Layout& layout) {
    FileDescriptor descriptor(memfd_create(kName, MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!descriptor) {
        throw NSError::posix(errno, "The memory shared with an effect");
    }
    // The seals keep the service from shrinking the memory, which would crash the host.
    if (ftruncate(descriptor.get(), static_cast<off_t>(sizeOf(layout))) != 0 ||
        fcntl(descriptor.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_SEAL) != 0) {
        throw NSError::posix(errno, "The memory shared with an effect");
    }
    SharedAudio audio(std::move(descriptor), layout);
    new (audio.memory_) Control;
    return audio;
}

SharedAudio SharedAudio::map(FileDescriptor descriptor, const Layout& layout) {
    struct stat status {};
    if (fstat(descriptor.get(), &status) != 0) {
        throw NSError::posix(errno, "The memory shared with the host");
    }
    if (static_cast<std::size_t>(status.st_size) != sizeOf(layout)) {
        throw NSError("SharedAudio", 1, "The memory shared with the host has the wrong size.");
    }
    return {std::move(descriptor), layout};
}

SharedAudio::SharedAudio(FileDescriptor descriptor, const Layout& layout)
    : descriptor_(std::move(descriptor)), layout_(layout), size_(sizeOf(layout)) {
    // MAP_POPULATE: the render thread must not wait for page faults.
    void* memory = mmap(nullptr, size_, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_POPULATE,
                        descriptor_.get(), 0);
    if (memory == MAP_FAILED) {
        throw NSError::posix(errno, "The memory shared with an effect");
    }
    memory_ = static_cast<std::byte*>(memory);
    auto* place = memory_ + aligned(sizeof(Control));
    const auto takeChannels = [&place](std::uint32_t count, std::vector<float*>& channels) {
        for (std::uint32_t channel = 0; channel < count; ++channel) {
            channels.push_back(reinterpret_cast<float*>(place));
            place += kChannelSize;
        }
    };
    takeChannels(layout.inputChannelCount, inputs_);
    takeChannels(layout.outputChannelCount, outputs_);
    events_ = place;
    values_ = reinterpret_cast<std::atomic<float>*>(place + kEventAreaSize);
}

SharedAudio::SharedAudio(SharedAudio&& other) noexcept
    : descriptor_(std::move(other.descriptor_)),
      layout_(other.layout_),
      size_(other.size_),
      memory_(std::exchange(other.memory_, nullptr)),
      inputs_(std::move(other.inputs_)),
      outputs_(std::move(other.outputs_)),
      events_(other.events_),
      values_(other.values_) {}

SharedAudio::~SharedAudio() {
    if (memory_ != nullptr) {
        munmap(memory_, size_);
    }
}

}  // namespace orvalo
