#include "support/view/ImageLoading.h"

#include <gtest/gtest.h>

#include <atomic>
#include <fstream>
#include <thread>
#include <vector>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/Print.h"
#include "platform/foundation/RunLoop.h"
#include "platform/foundation/URL.h"
#include "platform/ui/UIImageView.h"
#include "tests/testing/CapturedOutput.h"
#include "tests/testing/Desktop.h"
#include "tests/testing/Lines.h"
#include "tests/testing/LoopbackServer.h"
#include "tests/testing/Picture.h"
#include "tests/testing/TemporaryFolder.h"

namespace orvalo::testing {
namespace {

using Connection = LoopbackServer::Connection;
using Request = LoopbackServer::Request;

const std::string notAnAddress = "UIImageView::loadFrom() : Could not encode url string : ";
const std::string notRead = "UIImageView::loadFrom() : Could not encode image data.";
const std::string always = "UIImageView::loadFrom() : Could not assign image.";
const std::string fetched = "Fetched image successfully";

/// A site with pictures and other content, by path.
void serve(const Request& request, const Connection& connection) {
    if (request.path == "/picture.png") {
        connection.answer(200, "image/png", pngFile(20, 10));
    } else if (request.path == "/large.png") {
        connection.answer(200, "image/png", pngFile(3000, 2000));
    } else if (request.path == "/text") {
        connection.answer(200, "text/plain", "no picture");
    } else if (request.path == "/missing-with-picture") {
        connection.answer(404, "image/png", pngFile(4, 4));
    } else if (request.path == "/created.png") {
        connection.answer(201, "image/png", pngFile(8, 8));
    } else if (request.path == "/truncated.png") {
        connection.send("HTTP/1.1 200 OK\r\nContent-Length: 5000\r\n\r\n" + pngFile(4, 4));
    } else {
        connection.answer(404, "text/plain", "not here");
    }
}

class ImageLoading : public ::testing::Test {
  protected:
    ImageLoading() {
        startDesktop();
        view = std::make_shared<UIImageView>();
        const auto file = pngFile(1, 1);
        view->setImage(UIImage::data(Data(file.begin(), file.end())));
    }

    /// Waits for that many lines and for all earlier items of the main queue.
    Lines linesAfter(std::size_t count) {
        EXPECT_TRUE(waitUntil([&] { return output.lines().size() >= count; })) << output.text();
        bool isDone = false;
        DispatchQueue::main()->async([&isDone] { isDone = true; });
        EXPECT_TRUE(waitUntil([&isDone] { return isDone; }));
        return output.lines();
    }

    CGSize shownSize() const { return view->image() ? view->image()->size() : CGSize{}; }
    bool waitForSize(const CGSize& size) {
        return waitUntil([&] { return shownSize() == size; });
    }

    LoopbackServer server{serve};
    CapturedOutput output;
    std::shared_ptr<UIImageView> view;
};

using LoadFrom = ImageLoading;

TEST_F(LoadFrom, ShowsThePictureAndPrintsItsLine) {
    loadFrom(view, server.address("/picture.png"));
    EXPECT_EQ(linesAfter(1), Lines{always});
    EXPECT_EQ(shownSize(), (CGSize{20, 10}));
}

TEST_F(LoadFrom, NamesATextThatIsNoAddress) {
    loadFrom(view, "");
    loadFrom(view, "no address");
    loadFrom(view, "a.png");
    EXPECT_EQ(linesAfter(3),
              (Lines{notAnAddress, notAnAddress + "no address", notAnAddress + "a.png"}));
    EXPECT_EQ(shownSize(), (CGSize{1, 1}));
}

TEST_F(LoadFrom, RunsOnTheMainQueue) {
    loadFrom(view, "");
    loadFrom(view, server.address("/picture.png"));
    EXPECT_EQ(server.requestedPaths(), Lines{});
    print("direct");
    EXPECT_EQ(output.lines(), Lines{"direct"});
    EXPECT_EQ(linesAfter(3), (Lines{"direct", notAnAddress, always}));
}

TEST_F(LoadFrom, EndsBeforeTheMainQueuesNextItem) {
    std::vector<CGSize> sizes;
    const auto noteSize = [&] { sizes.push_back(shownSize()); };
    DispatchQueue::main()->async(noteSize);
    loadFrom(view, server.address("/picture.png"));
    DispatchQueue::main()->async(noteSize);
    EXPECT_EQ(linesAfter(1), Lines{always});
    EXPECT_EQ(sizes, (std::vector<CGSize>{{1, 1}, {20, 10}}));
}

TEST_F(LoadFrom, ReportsUnreadableAddresses) {
    loadFrom(view, LoopbackServer::refusedAddress());
    loadFrom(view, server.address("/nothing"));
    loadFrom(view, server.address("/missing-with-picture"));
    loadFrom(view, server.address("/truncated.png"));
    loadFrom(view, "ftp://127.0.0.1/a.png");
    EXPECT_EQ(linesAfter(5), Lines(5, notRead));
    EXPECT_EQ(shownSize(), (CGSize{1, 1}));
}

TEST_F(LoadFrom, KeepsTheImageForOtherContent) {
    loadFrom(view, server.address("/text"));
    EXPECT_EQ(linesAfter(1), Lines{always});
    EXPECT_EQ(shownSize(), (CGSize{1, 1}));
}

TEST_F(LoadFrom, AcceptsLargePictures) {
    loadFrom(view, server.address("/large.png"));
    EXPECT_EQ(linesAfter(1), Lines{always});
    EXPECT_EQ(shownSize(), (CGSize{3000, 2000}));
}

TEST_F(LoadFrom, ReadsFiles) {
    const TemporaryFolder folder;
    const auto path = (folder.path() / "a b.png").string();
    std::ofstream(path) << pngFile(9, 9);
    loadFrom(view, URL::fileURLWithPath(path).absoluteString());
    EXPECT_EQ(linesAfter(1), Lines{always});
    EXPECT_EQ(shownSize(), (CGSize{9, 9}));
    loadFrom(view, URL::fileURLWithPath(path + "x").absoluteString());
    EXPECT_EQ(linesAfter(2), (Lines{always, notRead}));
}

TEST_F(LoadFrom, DoesNotKeepTheViewAlive) {
    const std::weak_ptr<UIImageView> left = view;
    loadFrom(view, server.address("/picture.png"));
    view.reset();
    EXPECT_TRUE(left.expired());
    EXPECT_EQ(linesAfter(1), Lines{always});
    EXPECT_EQ(server.requestedPaths(), Lines{"/picture.png"});
}

TEST_F(LoadFrom, CanBeCalledOnAnyThread) {
    std::thread([this] { loadFrom(view, server.address("/picture.png")); }).join();
    EXPECT_EQ(linesAfter(1), Lines{always});
    EXPECT_EQ(shownSize(), (CGSize{20, 10}));
}

using GetImage = ImageLoading;

TEST_F(GetImage, ShowsThePicture) {
    getImageFromURLString(view, server.address("/picture.png"));
    ASSERT_TRUE(waitForSize({20, 10}));
    EXPECT_EQ(output.lines(), Lines{fetched});
}

TEST_F(GetImage, PrintsNothingForATextThatIsNoAddress) {
    getImageFromURLString(view, "");
    getImageFromURLString(view, "no address");
    getImageFromURLString(view, server.address("/picture.png"));
    ASSERT_TRUE(waitForSize({20, 10}));
    EXPECT_EQ(output.lines(), Lines{fetched});
}

TEST_F(GetImage, ClearsTheViewSilentlyForAnErrorStatus) {
    getImageFromURLString(view, server.address("/nothing"));
    ASSERT_TRUE(waitForSize({}));
    EXPECT_EQ(output.lines(), Lines{});
}

TEST_F(GetImage, ShowsAPictureOfAnyStatus) {
    getImageFromURLString(view, server.address("/missing-with-picture"));
    ASSERT_TRUE(waitForSize({4, 4}));
    getImageFromURLString(view, server.address("/created.png"));
    ASSERT_TRUE(waitForSize({8, 8}));
    EXPECT_EQ(output.lines(), Lines{});
}

TEST_F(GetImage, ClearsTheViewForOtherContent) {
    getImageFromURLString(view, server.address("/text"));
    ASSERT_TRUE(waitForSize({}));
    EXPECT_EQ(output.lines(), Lines{fetched});
}

TEST_F(GetImage, PrintsATransportErrorAndKeepsTheView) {
    const auto refused = LoopbackServer::refusedAddress();
    getImageFromURLString(view, refused);
    EXPECT_EQ(linesAfter(1), Lines{"Error Domain=NSURLErrorDomain Code=-1004 \"" + refused +
                                   ": The server accepts no connection.\""});
    const auto truncated = server.address("/truncated.png");
    getImageFromURLString(view, truncated);
    EXPECT_EQ(linesAfter(2).back(), "Error Domain=NSURLErrorDomain Code=-1005 \"" + truncated +
                                        ": The connection broke off.\"");
    EXPECT_EQ(shownSize(), (CGSize{1, 1}));
}

TEST_F(GetImage, DoesNotBlockTheMainThread) {
    bool isAsked = false;
    const LoopbackServer slow([&isAsked](const Request&, const Connection& connection) {
        DispatchQueue::main()->async([&isAsked] { isAsked = true; });
        connection.waitForEnd();
    });
    getImageFromURLString(view, slow.address("/"));
    ASSERT_TRUE(waitUntil([&isAsked] { return isAsked; }));
    EXPECT_EQ(linesAfter(0), Lines{});
    EXPECT_EQ(shownSize(), (CGSize{1, 1}));
}

/// Records the thread of its destruction.
class EndingView : public UIImageView {
  public:
    explicit EndingView(std::atomic<int>& endedOnMain) : endedOnMain_(endedOnMain) {}
    ~EndingView() override { endedOnMain_ = RunLoop::isMainThread() ? 1 : -1; }

  private:
    std::atomic<int>& endedOnMain_;
};

TEST_F(GetImage, KeepsTheViewAliveAndReleasesItOnTheMainThread) {
    for (const auto& address : {server.address("/picture.png"), LoopbackServer::refusedAddress()}) {
        std::atomic<int> endedOnMain = 0;
        getImageFromURLString(std::make_shared<EndingView>(endedOnMain), address);
        EXPECT_EQ(endedOnMain, 0);
        ASSERT_TRUE(waitUntil([&endedOnMain] { return endedOnMain != 0; }));
        EXPECT_EQ(endedOnMain, 1) << address;
    }
}

TEST_F(GetImage, ReadsFilesSilently) {
    const TemporaryFolder folder;
    const auto path = (folder.path() / "a.png").string();
    std::ofstream(path) << pngFile(9, 9);
    getImageFromURLString(view, URL::fileURLWithPath(path).absoluteString());
    ASSERT_TRUE(waitForSize({9, 9}));
    EXPECT_EQ(output.lines(), Lines{});
}

}  // namespace
}  // namespace orvalo::testing
