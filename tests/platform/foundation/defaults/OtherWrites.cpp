#include "tests/platform/foundation/defaults/OtherWrites.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>

namespace orvalo::testing {

namespace {

void replace(const char* name, OtherWrites::Write function) {
    auto* system = sqlite3_vfs_find(nullptr);
    system->xSetSystemCall(system, name, reinterpret_cast<sqlite3_syscall_ptr>(function));
}

}  // namespace

OtherWrites::OtherWrites(Write write) {
    replace("pwrite", write);
    replace("pwrite64", write);
}

OtherWrites::~OtherWrites() {
    replace("pwrite", nullptr);
    replace("pwrite64", nullptr);
}

bool StopAtWrite::hasStopped_ = false;

ssize_t StopAtWrite::write(int file, const void* bytes, size_t size, off_t at) {
    const auto link = "/proc/self/fd/" + std::to_string(file);
    if (!hasStopped_ && std::filesystem::read_symlink(link).string().ends_with("-wal")) {
        hasStopped_ = true;
        raise(SIGSTOP);
    }
    return pwrite(file, bytes, size, at);
}

int FullDisk::left_ = 0;

FullDisk::FullDisk(int writes) : writes_(write) {
    left_ = writes;
}

ssize_t FullDisk::write(int file, const void* bytes, size_t size, off_t at) {
    if (left_ > 0) {
        --left_;
        return pwrite(file, bytes, size, at);
    }
    errno = ENOSPC;
    return -1;
}

}  // namespace orvalo::testing
