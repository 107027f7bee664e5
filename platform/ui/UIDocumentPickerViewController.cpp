#include "platform/ui/UIDocumentPickerViewController.h"

#include <gtk/gtk.h>

#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/FatalError.h"
#include "platform/foundation/FileManager.h"
#include "platform/foundation/GLibPointer.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/UIWindow.h"

namespace orvalo {

namespace {

std::optional<URL> urlOf(GFile* file) {
    if (const GText path(g_file_get_path(file)); path) {
        return URL::fileURLWithPath(path.get());
    }
    const GText address(g_file_get_uri(file));
    auto url = URL::string(address.get());
    if (!url) {
        g_warning("The picked folder has no address: %s.", address.get());
    }
    return url;
}

void beginInDocuments(GtkFileChooser* chooser) {
    const auto documents = FileManager::default_().urls(SearchPathDirectory::documentDirectory,
                                                        SearchPathDomainMask::userDomainMask);
    const GObjectPointer<GFile> folder(g_file_new_for_path(documents.front().path().c_str()));
    gtk_file_chooser_set_current_folder(chooser, folder.get(), nullptr);
}

}  // namespace

UIDocumentPickerViewController::UIDocumentPickerViewController(
    const std::vector<std::string>& documentTypes, UIDocumentPickerMode /*in*/)
    : UIViewController(std::nullopt, nullptr) {
    if (documentTypes.empty()) {
        fatalError("A document picker needs a document type.");
    }
    for (const auto& type : documentTypes) {
        if (type != "public.folder") {
            fatalError("Document pickers do not support the type \"" + type + "\".");
        }
    }
}

UIDocumentPickerViewController::~UIDocumentPickerViewController() {
    leaveScreen();
}

void UIDocumentPickerViewController::setDelegate(
    const std::weak_ptr<UIDocumentPickerDelegate>& delegate) {
    requireMainThread("UIDocumentPickerViewController.delegate");
    delegate_ = delegate;
}

void UIDocumentPickerViewController::beginPresentation(
    const std::shared_ptr<UIViewController>& presenter, bool /*animated*/,
    const std::function<void()>& shown) {
    const bool several = allowsMultipleSelection;
    chooser_ = gtk_file_chooser_native_new(
        several ? "Choose Folders" : "Choose a Folder", GTK_WINDOW(presenter->window()->widget()),
        GTK_FILE_CHOOSER_ACTION_SELECT_FOLDER, "C_hoose", "_Cancel");
    gtk_file_chooser_set_select_multiple(GTK_FILE_CHOOSER(chooser_), several ? TRUE : FALSE);
    gtk_native_dialog_set_modal(GTK_NATIVE_DIALOG(chooser_), TRUE);
    beginInDocuments(GTK_FILE_CHOOSER(chooser_));
    const auto answered = +[](UIDocumentPickerViewController* self, int response) {
        self->answer(response == GTK_RESPONSE_ACCEPT);
    };
    g_signal_connect_swapped(chooser_, "response", G_CALLBACK(answered), this);
    gtk_native_dialog_show(GTK_NATIVE_DIALOG(chooser_));
    if (shown) {
        shown();
    }
}

void UIDocumentPickerViewController::endPresentation(bool /*animated*/,
                                                     const std::function<void()>& gone) {
    leaveScreen();
    if (gone) {
        gone();
    }
}

void UIDocumentPickerViewController::answer(bool isAccepted) {
    auto self = shared(this);
    auto urls = isAccepted ? pickedURLs() : std::vector<URL>();
    leaveScreen();
    presentationEnded();
    DispatchQueue::main()->async([self = std::move(self), urls = std::move(urls)] {
        const auto delegate = self->delegate();
        if (delegate && urls.empty()) {
            delegate->documentPickerWasCancelled(self);
        } else if (delegate) {
            delegate->documentPicker(self, urls);
        }
    });
}

std::vector<URL> UIDocumentPickerViewController::pickedURLs() const {
    const GObjectPointer<GListModel> files(gtk_file_chooser_get_files(GTK_FILE_CHOOSER(chooser_)));
    std::vector<URL> urls;
    for (guint index = 0; index < g_list_model_get_n_items(files.get()); ++index) {
        const GObjectPointer<GFile> file(G_FILE(g_list_model_get_item(files.get(), index)));
        if (auto url = urlOf(file.get())) {
            urls.push_back(*std::move(url));
        }
    }
    return urls;
}

void UIDocumentPickerViewController::leaveScreen() {
    if (auto* chooser = std::exchange(chooser_, nullptr)) {
        g_signal_handlers_disconnect_by_data(chooser, this);
        gtk_native_dialog_destroy(GTK_NATIVE_DIALOG(chooser));
        gdk_display_flush(gdk_display_get_default());
        g_object_unref(chooser);
    }
}

}  // namespace orvalo
