#include <csignal>
#include <cstdlib>

#include "app/ApplicationClasses.h"
#include "app/EffectRestoration.h"
#include "platform/foundation/Print.h"
#include "platform/ui/UIApplicationMain.h"

int main(int argc, char** argv) {
    using namespace orvalo;
    printWithoutWaiting();
    // What is larger than files may be is then an error like others.
    std::signal(SIGXFSZ, SIG_IGN);
    registerApplicationClasses();
    restoreEffect();
    UIApplicationMain(argc, argv, std::nullopt, "AppDelegate");
    return EXIT_SUCCESS;
}
