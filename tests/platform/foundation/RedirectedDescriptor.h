#pragma once

#include <unistd.h>

#include <cstdio>

namespace orvalo::testing {

/// Redirects a file descriptor to the file of another descriptor for the object's life.
class RedirectedDescriptor {
  public:
    RedirectedDescriptor(int descriptor, int file)
        : descriptor_(descriptor), saved_(dup(descriptor)) {
        std::fflush(nullptr);
        dup2(file, descriptor_);
    }
    ~RedirectedDescriptor() {
        dup2(saved_, descriptor_);
        close(saved_);
    }
    RedirectedDescriptor(const RedirectedDescriptor&) = delete;
    RedirectedDescriptor& operator=(const RedirectedDescriptor&) = delete;

  private:
    int descriptor_;
    int saved_;
};

}  // namespace orvalo::testing
