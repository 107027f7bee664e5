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
    open = 1,  ///< In place: neither copied nor moved.
};

/// The desktop's own chooser of folders, modal for the presenter's window; through the desktop
/// portal where the program runs in a sandbox. It begins in the user's documents. Main thread.
class UIDocumentPickerViewController : public UIViewController {
  public:
    /// documentTypes: "public.folder", the only type that there is a chooser for; another one, or
    /// none, is a fatal error that names it.
    UIDocumentPickerViewController(const std::vector<std::string>& documentTypes,
                                   UIDocumentPickerMode in);
    ~UIDocumentPickerViewController() override;

    /// Not kept alive by the picker.
    void setDelegate(const std::weak_ptr<UIDocumentPickerDelegate>& delegate);
    std::shared_ptr<UIDocumentPickerDelegate> delegate() const { return delegate_.lock(); }

    /// Whether several folders can be picked at once. Counts when the picker is presented.
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
