#include "programs/effect-service/ServiceConnection.h"

#include <utility>

namespace orvalo {

struct ServiceConnection::Source {
    GSource base;
    ServiceConnection* connection;
    gpointer tag;

    static gboolean dispatch(GSource* source, GSourceFunc /*callback*/, gpointer /*data*/) {
        reinterpret_cast<Source*>(source)->connection->serve();
        return G_SOURCE_CONTINUE;
    }
    static gboolean check(GSource* source) {
        return g_source_query_unix_fd(source, reinterpret_cast<Source*>(source)->tag) != 0 ? TRUE
                                                                                           : FALSE;
    }
};

ServiceConnection::ServiceConnection(FileDescriptor socket) : channel_(std::move(socket)) {
    static GSourceFuncs functions{nullptr, Source::check, Source::dispatch,
                                  nullptr, nullptr,       nullptr};
    source_.reset(g_source_new(&functions, sizeof(Source)));
    auto* source = reinterpret_cast<Source*>(source_.get());
    source->connection = this;
    source->tag = g_source_add_unix_fd(source_.get(), channel_.descriptor(), G_IO_IN);
    g_source_attach(source_.get(), nullptr);
}

void ServiceConnection::send(const bridge::ServiceMessage& message) {
    channel_.send(bridge::encode(message));
    updateConditions();
}

void ServiceConnection::updateConditions() {
    const auto conditions = channel_.isWaiting() ? G_IO_IN | G_IO_OUT : G_IO_IN;
    g_source_modify_unix_fd(source_.get(), reinterpret_cast<Source*>(source_.get())->tag,
                            static_cast<GIOCondition>(conditions));
}

void ServiceConnection::serve() {
    channel_.flush();
    const auto result = channel_.receive([this](std::uint32_t type, auto bytes) {
        const auto message = bridge::decodeHostMessage(type, bytes);
        if (message) {
            onMessage(*message);
        }
        return message.has_value();
    });
    if (result == Result::waiting) {
        updateConditions();
    } else {
        g_source_destroy(source_.get());
        onEnd(result == Result::broken || channel_.hasPart());
    }
}

}  // namespace orvalo
