#include "tests/platform/foundation/defaults/SmallDisk.h"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <fstream>
#include <iostream>
#include <string>

namespace orvalo::testing {

namespace {

constexpr std::size_t kLargerSize = 8 * SmallDisk::kSize;
// Less than a page of a database, more than the files of the tests themselves.
constexpr std::size_t kNoRoom = 2000;

/// Moves the process into a new mount namespace, through a user namespace where it lacks the right.
/// Returns whether that worked.
bool isAlone() {
    const auto user = std::to_string(geteuid());
    const auto group = std::to_string(getegid());
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return false;
        }
        std::ofstream("/proc/self/setgroups") << "deny";
        std::ofstream("/proc/self/uid_map") << user + " " + user + " 1";
        std::ofstream("/proc/self/gid_map") << group + " " + group + " 1";
    }
    return mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

std::string sizeOption(std::size_t size) {
    return "mode=0700,size=" + std::to_string(size);
}

void limitFiles(rlim_t size) {
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(size, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

}  // namespace

SmallDisk& SmallDisk::shared() {
    static auto& disk = *new SmallDisk;
    return disk;
}

void SmallDisk::mount(const std::filesystem::path& folder) {
    folder_ = folder;
    isMounted_ = isAlone() && ::mount("none", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV,
                                      sizeOption(kSize).c_str()) == 0;
    std::cout << "The small disk is "
              << (isMounted_ ? "a file system in memory." : "a limit on the size of files.")
              << std::endl;
    if (!isMounted_) {
        std::signal(SIGXFSZ, SIG_IGN);
        limitFiles(kSize);
    }
}

void SmallDisk::unmount() {
    if (isMounted_) {
        umount2(folder_.c_str(), MNT_DETACH);
    }
}

void SmallDisk::resize(std::size_t size) const {
    ::mount("none", folder_.c_str(), nullptr, MS_REMOUNT, sizeOption(size).c_str());
}

void SmallDisk::empty() {
    makeRoom();
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
        std::filesystem::remove_all(entry.path());
    }
    if (isMounted_) {
        resize(kSize);
    } else {
        limitFiles(kSize);
    }
}

void SmallDisk::fill() {
    if (!isMounted_) {
        limitFiles(kNoRoom);
        return;
    }
    const int file = open(ballast().c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    constexpr std::array<char, 4096> page{};
    for (auto size = page.size(); size > 0; size /= 2) {
        while (write(file, page.data(), size) > 0) {
        }
    }
    close(file);
}

void SmallDisk::makeRoom() {
    if (!isMounted_) {
        limitFiles(kLargerSize);
        return;
    }
    if (isProtected_) {
        umount2(folder_.c_str(), MNT_DETACH);
        isProtected_ = false;
    }
    resize(kLargerSize);
    std::filesystem::remove(ballast());
}

void SmallDisk::protect() {
    if (!isMounted_) {
        limitFiles(kNoRoom);
        return;
    }
    // A file system with a file open for writing cannot become read-only; a bind mount can.
    isProtected_ =
        ::mount(folder_.c_str(), folder_.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
        ::mount("none", folder_.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0;
}

}  // namespace orvalo::testing
