#include "bench/defaults/Peer.h"

#include <stdexcept>

#include "platform/foundation/ExecutablePath.h"

namespace orvalo::bench {

Peer::Peer(const std::string& contender, const std::filesystem::path& folder,
           const std::string& what, int number) {
    const auto program = executablePath().parent_path() / "orvalo-bench-defaults-peer";
    process_.reset(g_subprocess_new(G_SUBPROCESS_FLAGS_STDOUT_PIPE, nullptr, program.c_str(),
                                    contender.c_str(), folder.c_str(), what.c_str(),
                                    std::to_string(number).c_str(), nullptr));
    if (!process_) {
        throw std::runtime_error(program.string() + " cannot be started");
    }
    output_.reset(g_data_input_stream_new(g_subprocess_get_stdout_pipe(process_.get())));
}

std::string Peer::line() {
    const GText text(g_data_input_stream_read_line(output_.get(), nullptr, nullptr, nullptr));
    if (!text) {
        throw std::runtime_error("the peer has ended early");
    }
    return text.get();
}

}  // namespace orvalo::bench
