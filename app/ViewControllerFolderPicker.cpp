#include "app/ViewController.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/Print.h"
#include "platform/ui/UIDocumentPickerViewController.h"

namespace orvalo {

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
