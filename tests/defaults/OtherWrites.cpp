#include "tests/defaults/OtherWrites.h"

#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>

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
