#include "tests/testing/CapturedOutput.h"

#include <sys/mman.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <sstream>

namespace orvalo::testing {

CapturedOutput::CapturedOutput(int descriptor)
    : descriptor_(descriptor),
      saved_(dup(descriptor)),
      file_(memfd_create("captured-output", MFD_CLOEXEC)) {
    std::fflush(nullptr);
    dup2(file_, descriptor_);
}

CapturedOutput::~CapturedOutput() {
    std::fflush(nullptr);
    dup2(saved_, descriptor_);
    close(saved_);
    close(file_);
}

std::string CapturedOutput::text() const {
    std::string result;
    std::array<char, 4096> chunk{};
    off_t offset = 0;
    for (ssize_t count = 0; (count = pread(file_, chunk.data(), chunk.size(), offset)) > 0;
         offset += count) {
        result.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return result;
}

std::vector<std::string> CapturedOutput::lines() const {
    std::istringstream stream(text());
    std::vector<std::string> result;
    for (std::string line; std::getline(stream, line);) {
        result.push_back(line);
    }
    return result;
}

}  // namespace orvalo::testing
