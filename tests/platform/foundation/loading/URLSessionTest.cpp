#include "platform/foundation/loading/URLSession.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <limits>

#include "platform/foundation/OneShot.h"
#include "platform/foundation/RunLoop.h"
#include "tests/platform/foundation/loading/Load.h"
#include "tests/testing/LoopbackServer.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

using Connection = LoopbackServer::Connection;
using Request = LoopbackServer::Request;

/// The text of a transport error without the address.
std::string reason(const Loaded& loaded, const std::string& address) {
    const auto text = loaded.error().localizedDescription();
    EXPECT_TRUE(text.starts_with(address + ": ")) << text;
    return text.substr(address.size() + 2);
}

TEST(URLSession, IsShared) {
    EXPECT_EQ(URLSession::shared(), URLSession::shared());
}

TEST(URLSession, LoadsContentByteForByte) {
    std::string content;
    for (int value = 0; value < 256; ++value) {
        content += static_cast<char>(value);
    }
    const LoopbackServer server([&](const Request& request, const Connection& connection) {
        EXPECT_EQ(request.method, "GET");
        connection.answer(200, "application/octet-stream", content);
    });
    const auto loaded = load(server.address("/bytes?a=%20b"));
    ASSERT_TRUE(loaded.isContents());
    EXPECT_EQ(loaded.text(), content);
    EXPECT_EQ(loaded.status(), 200);
    EXPECT_EQ(loaded.response().url, URL::string(server.address("/bytes?a=%20b")));
    EXPECT_EQ(server.requestedPaths(), std::vector<std::string>{"/bytes?a=%20b"});
}

TEST(URLSession, CompletesOnABackgroundThreadWithoutARunLoop) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.answer(200, "text/plain", "x");
    });
    const auto main = std::this_thread::get_id();
    EXPECT_NE(load(server.address("/")).thread, main);
    EXPECT_NE(load(LoopbackServer::refusedAddress()).thread, main);
    EXPECT_NE(load(URLRequest{}).thread, main);
    EXPECT_NE(load("file:///").thread, main);
}

TEST(URLSession, LoadsFromAnyThread) {
    const LoopbackServer server([](const Request& request, const Connection& connection) {
        connection.answer(200, "text/plain", request.path);
    });
    std::atomic<int> right = 0;
    std::vector<std::thread> threads;
    threads.reserve(8);
    for (int number = 0; number < 8; ++number) {
        threads.emplace_back([&server, &right, path = "/" + std::to_string(number)] {
            right += load(server.address(path)).text() == path ? 1 : 0;
        });
    }
    for (auto& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(right, 8);
}

TEST(URLSession, LoadsContentOfAnyStatus) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.answer(404, "text/plain", "not here");
    });
    const auto loaded = load(server.address("/nothing"));
    ASSERT_TRUE(loaded.isContents());
    EXPECT_EQ(loaded.status(), 404);
    EXPECT_EQ(loaded.text(), "not here");
}

TEST(URLSession, FollowsRedirections) {
    const LoopbackServer server([](const Request& request, const Connection& connection) {
        if (request.path == "/old") {
            connection.answer(302, "text/plain", "moved", "Location: /new\r\n");
        } else {
            connection.answer(200, "text/plain", "found");
        }
    });
    const auto loaded = load(server.address("/old"));
    ASSERT_TRUE(loaded.isContents());
    EXPECT_EQ(loaded.text(), "found");
    EXPECT_EQ(loaded.status(), 200);
    EXPECT_EQ(loaded.response().url, URL::string(server.address("/new")));
}

TEST(URLSession, StopsAfterTooManyRedirections) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.answer(302, "text/plain", "", "Location: /round\r\n");
    });
    const auto loaded = load(server.address("/round"));
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().code(), -1007);
    EXPECT_EQ(reason(loaded, server.address("/round")), "The server redirects too often.");
}

TEST(URLSession, DoesNotFollowARedirectionToAFile) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.answer(302, "text/plain", "moved", "Location: file:///etc/hostname\r\n");
    });
    const auto loaded = load(server.address("/sly"));
    if (loaded.isContents()) {
        EXPECT_EQ(loaded.text(), "moved");
        EXPECT_EQ(loaded.status(), 302);
    } else {
        EXPECT_EQ(loaded.error().domain(), "NSURLErrorDomain");
    }
}

TEST(URLSession, LoadsLargeContent) {
    std::string content(std::size_t{24} * 1024 * 1024, '\0');
    for (std::size_t at = 0; at < content.size(); ++at) {
        content[at] = static_cast<char>(at * 7 + at / 65536);
    }
    const LoopbackServer server([&](const Request&, const Connection& connection) {
        connection.answer(200, "application/octet-stream", content);
    });
    EXPECT_EQ(load(server.address("/large")).text(), content);
}

TEST(URLSession, LoadsEmptyContent) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.answer(204, "text/plain", "");
    });
    const auto loaded = load(server.address("/"));
    ASSERT_TRUE(loaded.isContents());
    EXPECT_EQ(loaded.status(), 204);
    EXPECT_EQ(loaded.text(), "");
}

TEST(URLSession, ReportsARefusedConnection) {
    const auto address = LoopbackServer::refusedAddress();
    const auto loaded = load(address);
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().domain(), "NSURLErrorDomain");
    EXPECT_EQ(loaded.error().code(), -1004);
    EXPECT_EQ(reason(loaded, address), "The server accepts no connection.");
}

TEST(URLSession, ReportsAnUnknownServerName) {
    // RFC 6761: a name that never resolves.
    const auto loaded = load("http://server.invalid/");
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().code(), -1003);
    EXPECT_EQ(reason(loaded, "http://server.invalid/"), "There is no server of this name.");
}

TEST(URLSession, ReportsTruncatedContent) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nthe beginning");
    });
    const auto loaded = load(server.address("/broken"));
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().code(), -1005);
    EXPECT_EQ(reason(loaded, server.address("/broken")), "The connection broke off.");
}

TEST(URLSession, ReportsAServerThatClosesTheConnection) {
    const LoopbackServer server([](const Request&, const Connection&) {});
    const auto loaded = load(server.address("/"));
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().code(), -1005);
}

TEST(URLSession, ReportsAResponseThatIsNotHTTP) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.send("220 mail.example ESMTP\r\n\r\n");
    });
    const auto loaded = load(server.address("/"));
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().domain(), "NSURLErrorDomain");
}

TEST(URLSession, TimesOutBeforeTheResponse) {
    OneShot hungUp;
    const LoopbackServer server([&](const Request&, const Connection& connection) {
        connection.waitForEnd();
        hungUp.signal();
    });
    const auto loaded = load(server.address("/slow"), 0.2);
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().code(), -1001);
    EXPECT_EQ(reason(loaded, server.address("/slow")), "The server took too long.");
    hungUp.wait();  // The request closes its connection.
}

TEST(URLSession, TimesOutInsideTheContent) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\nthe beginning");
        connection.waitForEnd();
    });
    const auto loaded = load(server.address("/slow"), 0.2);
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().code(), -1001);
}

TEST(URLSession, RestartsTheTimeOutAtEveryProgress) {
    const LoopbackServer server([](const Request&, const Connection& connection) {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 6\r\n\r\n");
        for (int piece = 0; piece < 6; ++piece) {
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
            connection.send(std::to_string(piece));
        }
    });
    // The whole load takes longer than the time-out, every pause is shorter.
    const auto loaded = load(server.address("/steady"), 2.5);
    ASSERT_TRUE(loaded.isContents()) << loaded.error().description();
    EXPECT_EQ(loaded.text(), "012345");
}

TEST(URLSession, AcceptsEveryTimeOut) {
    const LoopbackServer server([](const Request& /*request*/, const Connection& connection) {
        connection.answer(200, "text/plain", "x");
    });
    for (const double none : {0.0, -1.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_TRUE(load(server.address("/"), none).isContents()) << none;
        EXPECT_EQ((URLRequest{.url = {}, .timeoutInterval = none}.timeout()), 60.0) << none;
    }
    EXPECT_EQ((URLRequest{.url = {}, .timeoutInterval = 0.25}.timeout()), 0.25);
    EXPECT_TRUE(load(server.address("/"), std::numeric_limits<double>::infinity()).isContents());
    EXPECT_TRUE(load(server.address("/"), 1e12).isContents());
}

TEST(URLSession, TimesOutAfterSixtySecondsByDefault) {
    EXPECT_EQ(URLRequest{}.timeoutInterval, 60.0);
    EXPECT_EQ(URLRequest{}.cachePolicy, URLRequestCachePolicy::useProtocolCachePolicy);
    EXPECT_EQ(static_cast<int>(URLRequestCachePolicy::useProtocolCachePolicy), 0);
}

TEST(URLSession, LoadsOthersWhileOneHangs) {
    OneShot hasEnded;
    {
        const LoopbackServer server([](const Request& request, const Connection& connection) {
            if (request.path == "/hangs") {
                connection.waitForEnd();
            } else {
                connection.answer(200, "text/plain", "at once");
            }
        });
        URLSession::shared()->data(URLRequest{.url = URL::string(server.address("/hangs"))},
                                   [&hasEnded](const URLResult&) { hasEnded.signal(); });
        EXPECT_EQ(load(server.address("/quick")).text(), "at once");
    }
    hasEnded.wait();  // The server's end ends it.
}

TEST(URLSession, ReadsFiles) {
    const TemporaryFolder folder;
    std::ofstream(folder.path() / "a b.txt") << "content";
    const auto url = URL::fileURLWithPath((folder.path() / "a b.txt").string());
    const auto loaded = load(URLRequest{.url = url});
    ASSERT_TRUE(loaded.isContents());
    EXPECT_EQ(loaded.text(), "content");
    EXPECT_EQ(loaded.status(), -1);
    EXPECT_EQ(loaded.response().url, url);
}

TEST(URLSession, ReportsAMissingFile) {
    const TemporaryFolder folder;
    const auto path = (folder.path() / "none").string();
    const auto loaded = load(URLRequest{.url = URL::fileURLWithPath(path)});
    ASSERT_FALSE(loaded.isContents());
    EXPECT_EQ(loaded.error().domain(), "NSPOSIXErrorDomain");
    EXPECT_EQ(loaded.error().code(), ENOENT);
    EXPECT_TRUE(loaded.error().localizedDescription().starts_with(path + ": "));
}

TEST(URLSession, RefusesOtherSchemes) {
    for (const auto* address : {"ftp://127.0.0.1/a", "mailto:a@b", "data:,a"}) {
        const auto loaded = load(address);
        ASSERT_FALSE(loaded.isContents()) << address;
        EXPECT_EQ(loaded.error().code(), -1002) << address;
        EXPECT_EQ(reason(loaded, address), "Addresses of this kind cannot be loaded.");
    }
    EXPECT_EQ(load("http:///a").error().code(), -1000);
    EXPECT_EQ(reason(load(URLRequest{}), "nil"), "Addresses of this kind cannot be loaded.");
}

}  // namespace
}  // namespace orvalo::testing
