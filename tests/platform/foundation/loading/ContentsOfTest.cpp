#include "platform/foundation/loading/ContentsOf.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>

#include "platform/foundation/NSError.h"
#include "tests/testing/LoopbackServer.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

using Connection = LoopbackServer::Connection;
using Request = LoopbackServer::Request;

std::string textOf(const std::string& address) {
    const auto data = contentsOf(*URL::string(address));
    return {data.begin(), data.end()};
}

/// The code of the thrown error; 0 when there is none.
std::int64_t errorCode(const std::string& address) {
    try {
        contentsOf(*URL::string(address));
    } catch (const NSError& error) {
        return error.code();
    }
    return 0;
}

TEST(ContentsOf, ReadsFromAWebServer) {
    const LoopbackServer server([](const Request& request, const Connection& connection) {
        if (request.path == "/old") {
            connection.answer(301, "text/plain", "", "Location: /new\r\n");
        } else {
            connection.answer(200, "text/plain", std::string(100000, 'a'));
        }
    });
    EXPECT_EQ(textOf(server.address("/old")), std::string(100000, 'a'));
}

TEST(ContentsOf, ReadsAFile) {
    const TemporaryFolder folder;
    const std::string content(200000, 'b');
    std::ofstream(folder.path() / "file") << content;
    EXPECT_EQ(textOf(URL::fileURLWithPath((folder.path() / "file").string()).absoluteString()),
              content);
}

TEST(ContentsOf, ThrowsForAnErrorStatus) {
    const LoopbackServer server([](const Request& request, const Connection& connection) {
        connection.answer(std::stoi(request.path.substr(1)), "text/plain", "sorry");
    });
    EXPECT_EQ(errorCode(server.address("/404")), -1008);
    EXPECT_EQ(errorCode(server.address("/500")), -1008);
    EXPECT_EQ(errorCode(server.address("/400")), -1008);
    EXPECT_EQ(textOf(server.address("/203")), "sorry");
}

TEST(ContentsOf, ThrowsTransportErrors) {
    EXPECT_EQ(errorCode(LoopbackServer::refusedAddress()), -1004);
    EXPECT_EQ(errorCode("ftp://127.0.0.1/"), -1002);
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nthe beginning");
    });
    EXPECT_EQ(errorCode(server.address("/")), -1005);
}

TEST(ContentsOf, NamesAFileThatCannotBeRead) {
    const TemporaryFolder folder;
    const auto folderAddress = URL::fileURLWithPath(folder.path().string()).absoluteString();
    EXPECT_EQ(errorCode(folderAddress), EISDIR);
    EXPECT_EQ(errorCode(folderAddress + "/none"), ENOENT);
}

}  // namespace
}  // namespace orvalo::testing
