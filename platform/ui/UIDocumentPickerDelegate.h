#pragma once

#include <memory>
#include <vector>

#include "platform/foundation/URL.h"

namespace orvalo {

class UIDocumentPickerViewController;

/// Who hears what the user has picked, on the main thread, after the picker has left the screen.
/// One of the three operations is called for a picker, once.
class UIDocumentPickerDelegate {
  public:
    virtual ~UIDocumentPickerDelegate() = default;

    /// What was picked, at least one address. A delegate that does not have this operation hears
    /// of a single address by the next one.
    virtual void documentPicker(const std::shared_ptr<UIDocumentPickerViewController>& controller,
                                const std::vector<URL>& didPickDocumentsAt) {
        if (didPickDocumentsAt.size() == 1) {
            documentPicker(controller, didPickDocumentsAt.front());
        }
    }
    /// The older form, for one address.
    virtual void documentPicker(
        const std::shared_ptr<UIDocumentPickerViewController>& /*controller*/,
        const URL& /*didPickDocumentAt*/) {}
    /// Nothing was picked.
    virtual void documentPickerWasCancelled(
        const std::shared_ptr<UIDocumentPickerViewController>& /*controller*/) {}
};

}  // namespace orvalo
