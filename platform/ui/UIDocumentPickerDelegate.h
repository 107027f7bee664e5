#pragma once

#include <memory>
#include <vector>

#include "platform/foundation/URL.h"

namespace orvalo {

class UIDocumentPickerViewController;

/// Receives the user's choice on the main thread, after the picker has closed. One of the three
/// operations is called, once.
class UIDocumentPickerDelegate {
  public:
    virtual ~UIDocumentPickerDelegate() = default;

    /// The picked addresses, at least one. The default passes a single address to the next
    /// operation.
    virtual void documentPicker(const std::shared_ptr<UIDocumentPickerViewController>& controller,
                                const std::vector<URL>& didPickDocumentsAt) {
        if (didPickDocumentsAt.size() == 1) {
            documentPicker(controller, didPickDocumentsAt.front());
        }
    }
    /// One picked address.
    virtual void documentPicker(
        const std::shared_ptr<UIDocumentPickerViewController>& /*controller*/,
        const URL& /*didPickDocumentAt*/) {}
    /// The user cancelled.
    virtual void documentPickerWasCancelled(
        const std::shared_ptr<UIDocumentPickerViewController>& /*controller*/) {}
};

}  // namespace orvalo
