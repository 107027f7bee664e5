#include "app/ApplicationClasses.h"

#include "app/AppDelegate.h"
#include "app/HelpViewController.h"
#include "app/ViewController.h"
#include "platform/plugin-ui/view/LV2ViewController.h"
#include "platform/ui/UIClass.h"
#include "platform/ui/UILabel.h"
#include "platform/web/WKWebView.h"

namespace orvalo {

void registerApplicationClasses() {
    UIClass::registerClass(UIClass::of<AppDelegate>("AppDelegate"));
    UIClass::registerClass(UIClass::of<ViewController>("ViewController")
                               .outlet("pluginView", &ViewController::pluginView)
                               .outlet("buttonUnit", &ViewController::buttonUnit)
                               .outlet("buttonInfo", &ViewController::buttonInfo)
                               .outlet("buttonHelp", &ViewController::buttonHelp)
                               .outlet("playButton", &ViewController::playButton)
                               .outlet("stopButton", &ViewController::stopButton)
                               .outlet("noSoundNotice", &ViewController::noSoundNotice)
                               .outlet("welcomeText", &ViewController::welcomeText)
                               .outlet("effectText", &ViewController::effectText)
                               .outlet("welcomeRetry", &ViewController::welcomeRetry)
                               .outlet("effectRetry", &ViewController::effectRetry)
                               .outlet("plainStage", &ViewController::plainStage)
                               .outlet("playingTitle", &ViewController::playingTitle)
                               .action("onRetryButton", &ViewController::onRetryButton)
                               .action("onButtonUnit", &ViewController::onButtonUnit)
                               .action("onPlayButton", &ViewController::onPlayButton)
                               .action("onStopButton", &ViewController::onStopButton)
                               .action("showHelp", &ViewController::showHelp));
    UIClass::registerClass(UIClass::of<HelpViewController>("HelpViewController")
                               .outlet("webView", &HelpViewController::webView_)
                               .outlet("buttonExit", &HelpViewController::buttonExit)
                               .action("onInstalledButton", &HelpViewController::onInstalledButton)
                               .action("onButtonExit", &HelpViewController::onButtonExit));
    UILabel::registerClass();
    WKWebView::registerClass();
    LV2ViewController::enable();
}

}  // namespace orvalo
