#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Audio Engine/AUEnginePlayerDelegate.h"
#include "hosting/AUExtensionManagerDelegate.h"
#include "platform/foundation/URL.h"
#include "platform/ui/UIButton.h"
#include "platform/ui/UIDocumentPickerDelegate.h"
#include "platform/ui/UILabel.h"
#include "platform/ui/UIOutlet.h"
#include "platform/ui/UIViewController.h"

namespace orvalo {

class AUExtensionManager;
class AVAudioUnit;

/// The main screen: holds the plug-in UI and the five buttons, and prints events. Main thread,
/// except onFoundComponent() and onEngineInitialized(), which the manager calls on its own thread.
class ViewController : public UIViewController,
                       public AUExtensionManagerDelegate,
                       public AUEnginePlayerDelegate,
                       public UIDocumentPickerDelegate {
  private:
    /// Created in viewDidLoad(), never released.
    std::shared_ptr<AUExtensionManager> audioUnitManager;

  public:
    /// Holds the plug-in UI.
    UIOutlet<UIView> pluginView{"ViewController.pluginView"};
    UIOutlet<UIButton> buttonUnit{"ViewController.buttonUnit"};
    UIOutlet<UIButton> buttonInfo{"ViewController.buttonInfo"};
    UIOutlet<UIButton> buttonHelp{"ViewController.buttonHelp"};
    UIOutlet<UIButton> playButton{"ViewController.playButton"};
    UIOutlet<UIButton> stopButton{"ViewController.stopButton"};
    /// Visible while the application plays without a sound device.
    UIOutlet<UIView> noSoundNotice{"ViewController.noSoundNotice"};
    /// What the stage says while no plug-in UI is shown, and while there is none to show.
    UIOutlet<UILabel> welcomeText{"ViewController.welcomeText"};
    UIOutlet<UILabel> effectText{"ViewController.effectText"};
    /// Visible while there is no effect.
    UIOutlet<UIButton> welcomeRetry{"ViewController.welcomeRetry"};
    UIOutlet<UIButton> effectRetry{"ViewController.effectRetry"};
    /// Visible beside a UI made of the toolkit's widgets, instead of the dark of other UIs.
    UIOutlet<UIView> plainStage{"ViewController.plainStage"};
    /// The title of what plays.
    UIOutlet<UILabel> playingTitle{"ViewController.playingTitle"};

  private:
    std::string documentsPath;
    /// Reserved for a directory shared with the effect.
    std::string sharedPath;
    std::string resourcesPath;
    /// Reserved for the effect's view controller.
    std::shared_ptr<UIViewController> audioUnitViewController;
    /// Reserved for the effect.
    std::shared_ptr<AVAudioUnit> avAudioUnit;

  public:
    ViewController(const std::optional<std::string>& nibName,
                   const std::shared_ptr<Bundle>& bundle);
    explicit ViewController(const NSCoder& coder);

    /// The view of audioUnitViewController, or null.
    std::shared_ptr<UIView> audioUnitView() const;

    void onFoundComponent(const std::shared_ptr<AVAudioUnit>& unit) override;
    void onEngineInitialized() override;
    void onPlayerStateChanged(bool playing) override;
    void onFileSelect(const std::string& file) override;
    void onLoop(std::int64_t count) override;

    /// Shows or hides the plug-in UI.
    virtual void onButtonUnit(const std::shared_ptr<NSObject>& sender);
    virtual void onPlayButton(const std::shared_ptr<UIButton>& sender);
    virtual void onStopButton(const std::shared_ptr<UIButton>& sender);
    /// Opens the maker's site in the browser and the help page in this window.
    virtual void showHelp(const std::shared_ptr<NSObject>& sender);

    /// Searches for the effect again.
    void onRetryButton(const std::shared_ptr<UIButton>& sender);

  private:
    virtual void embedPlugInView();

  public:
    /// Lays out the plug-in UI at 4:3 in the middle of the screen.
    virtual void centerPluginView();

  private:
    /// w, h: the available size in points.
    virtual void resetPluginView(double w, double h);
    virtual void getDirectories();

  public:
    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewDidDisappear(bool animated) override;
    void viewDidLayoutSubviews() override;
    bool canPerformAction(const std::string& action,
                          const std::shared_ptr<NSObject>& withSender) override;
    void prepare(const std::shared_ptr<UIStoryboardSegue>& for_,
                 const std::shared_ptr<NSObject>& sender) override;

    /// Asks the user to confirm or cancel, and prints the answer.
    virtual void alertMessage(const std::string& title, const std::string& message);

    // The folder picker. No control opens it.
    virtual void openFilePicker();
    void documentPicker(const std::shared_ptr<UIDocumentPickerViewController>& picker,
                        const URL& didPickDocumentAt) override;
    void documentPicker(const std::shared_ptr<UIDocumentPickerViewController>& picker,
                        const std::vector<URL>& didPickDocumentsAt) override;
    void documentPickerWasCancelled(
        const std::shared_ptr<UIDocumentPickerViewController>& picker) override;

  private:
    friend struct ViewControllerPeer;  ///< For tests.

    void embed(const std::shared_ptr<UIViewController>& controller);
    void showWelcome() const;
    void setEffectMissing(bool isMissing);

    bool isEffectMissing_ = false;
    bool isPlaying_ = false;
};

}  // namespace orvalo
