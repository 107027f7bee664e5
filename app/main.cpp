#include <cstdlib>

#include "app/ApplicationClasses.h"
#include "platform/foundation/Print.h"
#include "platform/ui/UIApplicationMain.h"

int main(int argc, char** argv) {
    using namespace orvalo;
    printWithoutWaiting();
    registerApplicationClasses();
    UIApplicationMain(argc, argv, std::nullopt, "AppDelegate");
    return EXIT_SUCCESS;
}
