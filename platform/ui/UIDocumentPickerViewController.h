#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/ui/UIDocumentPickerDelegate.h"
#include "platform/ui/UIViewController.h"

using GtkFileChooserNative =
    struct _GtkFileChooserNative;  // NOLINT(bugprone-reserved-identifier): GTK's own.

namespace orvalo {

enum class UIDocumentPickerMode {
    open = 1,  ///< Documents stay in place.
};

/// The desktop's folder chooser, modal for the presenter's window. Uses the desktop portal in a
/// sandbox. Starts in the user's documents folder. Main thread.
class UIDocumentPickerViewController : public UIViewController {
  public:
    /// documentTypes: only "public.folder"; an empty list or another type is a fatal error.
    UIDocumentPickerViewController(const std::vector<std::string>& documentTypes,
                                   UIDocumentPickerMode in);
    ~UIDocumentPickerViewController() override;

    /// Not kept alive by the picker.
    void setDelegate(const std::weak_ptr<UIDocumentPickerDelegate>& delegate);
    std::shared_ptr<UIDocumentPickerDelegate> delegate() const { return delegate_.lock(); }

    /// Whether several folders can be picked. Set it before the presentation.
    bool allowsMultipleSelection = false;

  protected:
    void beginPresentation(const std::shared_ptr<UIViewController>& presenter, bool animated,
                           const std::function<void()>& shown) override;
    void endPresentation(bool animated, const std::function<void()>& gone) override;

  private:
    void answer(bool isAccepted);
    std::vector<URL> pickedURLs() const;
    void leaveScreen();

    std::weak_ptr<UIDocumentPickerDelegate> delegate_;
    GtkFileChooserNative* chooser_ = nullptr;
};

}  // namespace orvalo
