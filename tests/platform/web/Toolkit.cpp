#include "tests/platform/web/Toolkit.h"

#include <gtk/gtk.h>

#include "platform/web/WKWebView.h"
#include "platform/web/WebSandbox.h"
#include "tests/testing/TemporaryFolder.h"
#include "tests/testing/XServer.h"

namespace orvalo::testing {

namespace {

struct Toolkit {
    TemporaryFolder folder;
    XServer server;

    Toolkit() {
        for (const char* place : {"HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME",
                                  "XDG_RUNTIME_DIR", "XDG_STATE_HOME"}) {
            g_setenv(place, folder.path().c_str(), TRUE);
        }
        g_setenv("GTK_A11Y", "none", TRUE);
        if (!canSandbox()) {
            g_setenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "1", TRUE);
        }
        gtk_init();
        WKWebView::registerClass();
    }
};

}  // namespace

void startToolkit() {
    static const Toolkit toolkit;
}

bool canSandbox() {
    static const bool can = !sandboxProblem();
    return can;
}

}  // namespace orvalo::testing
