#include "app/ViewController.h"

#include <string_view>

#include "app/HelpViewController.h"
#include "app/Site.h"
#include "hosting/AUExtensionManager.h"
#include "platform/audio/engine/AVAudioSession.h"
#include "platform/audio/engine/AVAudioUnit.h"
#include "platform/audio/file/AudioFileTitle.h"
#include "platform/audio/unit/AUAudioUnit.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/Print.h"
#include "platform/plugin-ui/view/AUViewController.h"
#include "platform/ui/UIAlertController.h"
#include "platform/ui/UIApplication.h"
#include "platform/ui/UIDocumentPickerViewController.h"
#include "platform/ui/UIStoryboardSegue.h"
#include "platform/ui/UIWindow.h"
#include "support/Unwrapped.h"
#include "support/view/PinToSuperviewEdges.h"

namespace orvalo {

namespace {

constexpr std::string_view kTitle = "Orvalo";
constexpr auto kWelcome =
    "Press play to hear a demonstration through the effect.\n"
    "The Effect button shows the effect’s own controls here.";
constexpr auto kPlaying =
    "A demonstration plays through the effect.\n"
    "The Effect button shows the effect’s controls: turn them and listen.";
constexpr auto kNoEffect =
    "No effect was found that works. Install Orvalo again, or register another LV2 effect; the "
    "help says how. Until then music plays without an effect.";

/// The window's title while an effect is loaded.
std::string windowTitle(const std::string& effect) {
    return effect == kTitle ? effect : std::string(kTitle) + " – " + effect;
}

}  // namespace

ViewController::ViewController(const std::optional<std::string>& nibName,
                               const std::shared_ptr<Bundle>& bundle)
    : UIViewController(nibName, bundle) {}

ViewController::ViewController(const NSCoder& coder) : UIViewController(coder) {}

std::shared_ptr<UIView> ViewController::audioUnitView() const {
    return audioUnitViewController ? audioUnitViewController->view() : nullptr;
}

void ViewController::onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) {
    print("ViewController: Loading the audio unit's interface...");
    if (!unit) {
        print("ERROR: The audio unit is not initialized to load the user interface.");
        return;
    }
    unit->auAudioUnit()->requestViewController(
        [screen = weak(this)](const std::shared_ptr<UIViewController>& controller) {
            const auto self = screen.lock();
            if (!self) {
                print("ERROR: Self is nil !?");
            } else if (!controller || !controller->view()) {
                print(
                    "ERROR: Something is wrong with the view controller and view of the audio "
                    "unit.");
            } else {
                self->embed(controller);
                controller->view()->setNeedsDisplay();
            }
        });
}

void ViewController::onEngineInitialized() {}

void ViewController::onPlayerStateChanged(bool playing) {
    playButton->setHidden(playing);
    stopButton->setHidden(!playing);
    isPlaying_ = playing;
    playingTitle->setHidden(!playing);
    showWelcome();
}

void ViewController::onFileSelect(const std::string& file) {
    playingTitle->setText(audioFileTitle(file));
}

void ViewController::onLoop(std::int64_t /*count*/) {}

void ViewController::onButtonUnit(const std::shared_ptr<NSObject>& /*sender*/) {
    pluginView->setHidden(!pluginView->isHidden());
}

void ViewController::onPlayButton(const std::shared_ptr<UIButton>& /*sender*/) {
    unwrapped(audioUnitManager).togglePlayback();
}

void ViewController::onStopButton(const std::shared_ptr<UIButton>& /*sender*/) {
    unwrapped(audioUnitManager).togglePlayback();
}

void ViewController::onRetryButton(const std::shared_ptr<UIButton>& /*sender*/) {
    setEffectMissing(false);
    unwrapped(audioUnitManager).searchAgain();
}

void ViewController::showWelcome() const {
    welcomeText->setText(isEffectMissing_ ? kNoEffect : isPlaying_ ? kPlaying : kWelcome);
}

void ViewController::setEffectMissing(bool isMissing) {
    isEffectMissing_ = isMissing;
    showWelcome();
    effectText->setText(isMissing ? kNoEffect : "The effect is not loaded yet.");
    welcomeRetry->setHidden(!isMissing);
    effectRetry->setHidden(!isMissing);
}

void ViewController::showHelp(const std::shared_ptr<NSObject>& /*sender*/) {
    const auto site = URL::string(makersSite);
    const auto installed = Bundle::main()->resourceURL();
    UIApplication::shared()->open(
        isSiteConfigured || !installed
            ? unwrapped(site)
            : installed->appendingPathComponent("site").appendingPathComponent("index.html"),
        {}, nullptr);
    performSegue("ShowHelp", shared(this));
}

void ViewController::embedPlugInView() {
    const auto controller = unwrapped(audioUnitManager).viewController;
    if (!controller) {
        fatalError("ERROR: Could not load audio unit's view controller.");
    }
    if (controller->view()) {
        embed(controller);
    }
}

void ViewController::embed(const std::shared_ptr<UIViewController>& controller) {
    const auto view = controller->view();
    effectText->setHidden(true);
    addChild(controller);
    if (const auto shown = window(); shown && !controller->title().empty()) {
        shown->setTitle(windowTitle(controller->title()));
    }
    plainStage->setHidden(std::dynamic_pointer_cast<AUViewController>(controller) != nullptr);
    view->setFrame(pluginView->bounds());
    pluginView->addSubview(view);
    pinToSuperviewEdges(*view);
    controller->didMove(shared(this));
}

void ViewController::centerPluginView() {
    resetPluginView(view()->bounds().size.width, view()->bounds().size.height);
}

void ViewController::resetPluginView(double w, double h) {
    if (!audioUnitViewController) {
        print("WARNING: Cannot reset the pluginview (yet).");
        return;
    }
    const auto bounds = view()->bounds().size;
    const auto effectView = audioUnitView();
    if (w < h) {
        const double width = h / 0.75;
        pluginView->setFrame({bounds.width * 0.5 - width * 0.5, 0, width, h});
        unwrapped(effectView).setFrame({0, 0, width, h});
    } else {
        const double height = w * 0.75;
        pluginView->setFrame({0, bounds.height * 0.5 - height * 0.5, w, height});
        unwrapped(effectView).setFrame({0, 0, w, height});
    }
    pluginView->setNeedsDisplay();
}

void ViewController::getDirectories() {
    const auto documents = FileManager::default_().urls(SearchPathDirectory::documentDirectory,
                                                        SearchPathDomainMask::userDomainMask);
    if (documents.empty()) {
        fatalError("There is no documents directory.");
    }
    documentsPath = documents.front().path();
    print("ViewController: The app's documents path is: " + documentsPath);

    const auto resources = Bundle::main()->resourceURL();
    if (!resources) {
        print("ViewController: Resources folder is nil.");
        return;
    }
    resourcesPath = resources->path();
    print("ViewController: The app's resources path is: " + resourcesPath);
}

void ViewController::viewDidLoad() {
    UIViewController::viewDidLoad();
    print("Info: Main view controller loaded.");
    playButton->setHidden(false);
    stopButton->setHidden(true);
    setEffectMissing(false);
    audioUnitManager = AUExtensionManager::init(shared(this), std::make_shared<AUEnginePlayer>(),
                                                [screen = weak(this)] {
                                                    DispatchQueue::main()->async([screen] {
                                                        if (const auto self = screen.lock()) {
                                                            self->setEffectMissing(true);
                                                        }
                                                    });
                                                });
    unwrapped(audioUnitManager).auEngine->delegate = shared(this);
    AVAudioSession::sharedInstance()->setRouteChangeHandler(
        [screen = weak(this)](bool isOutputMissing) {
            if (const auto self = screen.lock()) {
                self->noSoundNotice->setHidden(!isOutputMissing);
            }
        });
    pluginView->setHidden(true);
    getDirectories();
}

void ViewController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
}

void ViewController::viewDidDisappear(bool animated) {
    UIViewController::viewDidDisappear(animated);
}

void ViewController::viewDidLayoutSubviews() {
    UIViewController::viewDidLayoutSubviews();
}

bool ViewController::canPerformAction(const std::string& action,
                                      const std::shared_ptr<NSObject>& withSender) {
    return UIViewController::canPerformAction(action, withSender);
}

void ViewController::prepare(const std::shared_ptr<UIStoryboardSegue>& for_,
                             const std::shared_ptr<NSObject>& /*sender*/) {
    if (!for_->identifier) {
        return;
    }
    const auto& identifier = *for_->identifier;
    print(identifier);
    if (identifier == "ShowInfo" || identifier == "ShowHelp") {
        const auto page = std::dynamic_pointer_cast<HelpViewController>(for_->destination);
        if (!page) {
            fatalError("The segue \"" + identifier + "\" does not lead to a HelpViewController.");
        }
        page->prepareInfo(identifier);
    }
}

void ViewController::alertMessage(const std::string& title, const std::string& message) {
    print(title + ": " + message);
    const auto alert =
        std::make_shared<UIAlertController>(title, message, UIAlertControllerStyle::alert);
    alert->addAction(std::make_shared<UIAlertAction>(
        "OK", UIAlertActionStyle::default_,
        [](const std::shared_ptr<UIAlertAction>&) { print("Alert was confirmed."); }));
    alert->addAction(std::make_shared<UIAlertAction>(
        "Cancel", UIAlertActionStyle::cancel,
        [](const std::shared_ptr<UIAlertAction>&) { print("Alert was canceled."); }));
    present(alert, true, nullptr);
}

void ViewController::openFilePicker() {
    const auto picker = std::make_shared<UIDocumentPickerViewController>(
        std::vector<std::string>{"public.folder"}, UIDocumentPickerMode::open);
    picker->setDelegate(shared(this));
    picker->allowsMultipleSelection = false;
    present(picker, true, [] {});
}

void ViewController::documentPicker(
    const std::shared_ptr<UIDocumentPickerViewController>& /*picker*/,
    const URL& didPickDocumentAt) {
    print("documentPicker (didPickDocumentAt): " + didPickDocumentAt.path());
}

void ViewController::documentPicker(
    const std::shared_ptr<UIDocumentPickerViewController>& /*picker*/,
    const std::vector<URL>& didPickDocumentsAt) {
    print("documentPicker: " + description(didPickDocumentsAt));
    if (didPickDocumentsAt.empty()) {
        fatalError("The document picker has picked nothing.");
    }
    print("documentPicker (didPickDocumentsAt): " + didPickDocumentsAt.front().path());
}

void ViewController::documentPickerWasCancelled(
    const std::shared_ptr<UIDocumentPickerViewController>& /*picker*/) {
    print("The document picker was canceled.");
}

}  // namespace orvalo
