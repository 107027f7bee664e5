#include "platform/foundation/defaults/ChangeMapping.h"

#include <sys/mman.h>

#include <cerrno>
#include <chrono>

#include "platform/foundation/NSError.h"

namespace orvalo {

ChangeMapping::ChangeMapping(int descriptor, bool isWritable, const std::string& path)
    : isWritable_(isWritable) {
    void* address = mmap(nullptr, size, isWritable ? PROT_READ | PROT_WRITE : PROT_READ, MAP_SHARED,
                         descriptor, 0);
    if (address == MAP_FAILED) {
        throw NSError::posix(errno, path);
    }
    page_ = static_cast<Page*>(address);
}

ChangeMapping::~ChangeMapping() {
    munmap(page_, size);
}

void ChangeMapping::initialise() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const auto ticks = std::chrono::duration_cast<std::chrono::nanoseconds>(now).count();
    setCount(static_cast<std::uint64_t>(ticks) * 2);
    page_->magic = kMagic;
}

}  // namespace orvalo
