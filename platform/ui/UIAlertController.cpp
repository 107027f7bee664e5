#include "platform/ui/UIAlertController.h"

#include <adwaita.h>

#include <algorithm>
#include <utility>

#include "platform/foundation/DispatchQueue.h"
#include "platform/foundation/FatalError.h"
#include "platform/ui/MainThread.h"
#include "platform/ui/UIWindow.h"

namespace orvalo {

namespace {

/// The response for closing the dialog without a cancel action.
constexpr const char* noAnswer = "none";

const char* textOf(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

}  // namespace

UIAlertController::UIAlertController(std::optional<std::string> title,
                                     std::optional<std::string> message,
                                     UIAlertControllerStyle preferredStyle)
    : UIViewController(std::nullopt, nullptr),
      title_(std::move(title)),
      message_(std::move(message)),
      preferredStyle_(preferredStyle) {}

UIAlertController::~UIAlertController() {
    leaveScreen();
}

void UIAlertController::addAction(const std::shared_ptr<UIAlertAction>& action) {
    requireMainThread("UIAlertController.addAction");
    if (action->style() == UIAlertActionStyle::cancel && cancelAction()) {
        fatalError("An alert has one cancel action at most; \"" + action->title() +
                   "\" would be the second.");
    }
    actions_.push_back(action);
}

std::shared_ptr<UIAlertAction> UIAlertController::cancelAction() const {
    const auto found = std::find_if(actions_.begin(), actions_.end(), [](const auto& action) {
        return action->style() == UIAlertActionStyle::cancel;
    });
    return found == actions_.end() ? nullptr : *found;
}

void UIAlertController::beginPresentation(const std::shared_ptr<UIViewController>& presenter,
                                          bool /*animated*/, const std::function<void()>& shown) {
    makeDialog(presenter->window()->widget());
    gtk_window_present(GTK_WINDOW(dialog_));
    if (shown) {
        shown();
    }
}

void UIAlertController::endPresentation(bool /*animated*/, const std::function<void()>& gone) {
    leaveScreen();
    if (gone) {
        gone();
    }
}

void UIAlertController::makeDialog(GtkWidget* above) {
    dialog_ = adw_message_dialog_new(GTK_WINDOW(above), textOf(title_), textOf(message_));
    g_object_ref(dialog_);
    gtk_window_set_modal(GTK_WINDOW(dialog_), TRUE);
    addResponses();
    g_signal_connect_swapped(
        dialog_, "response",
        G_CALLBACK(+[](UIAlertController* self, const char* response) { self->answer(response); }),
        this);
    if (!actions_.empty() && !cancelAction()) {
        // Escape and the window manager must not close the dialog.
        g_signal_connect(dialog_, "close-request", G_CALLBACK(+[]() -> gboolean { return TRUE; }),
                         nullptr);
    }
}

void UIAlertController::addResponses() {
    adw_message_dialog_set_close_response(ADW_MESSAGE_DIALOG(dialog_), noAnswer);
    std::vector<std::size_t> others;
    for (std::size_t index = 0; index < actions_.size(); ++index) {
        if (actions_[index]->style() == UIAlertActionStyle::cancel) {
            addResponse(index);
            adw_message_dialog_set_close_response(ADW_MESSAGE_DIALOG(dialog_),
                                                  std::to_string(index).c_str());
        } else {
            others.push_back(index);
        }
    }
    for (const auto index : others) {
        addResponse(index);
    }
    const auto isDefault = [](const auto& action) {
        return action->style() == UIAlertActionStyle::default_;
    };
    if (std::count_if(actions_.begin(), actions_.end(), isDefault) == 1) {
        const auto index = std::to_string(
            std::find_if(actions_.begin(), actions_.end(), isDefault) - actions_.begin());
        adw_message_dialog_set_default_response(ADW_MESSAGE_DIALOG(dialog_), index.c_str());
        adw_message_dialog_set_response_appearance(ADW_MESSAGE_DIALOG(dialog_), index.c_str(),
                                                   ADW_RESPONSE_SUGGESTED);
    }
}

void UIAlertController::addResponse(std::size_t index) {
    const auto id = std::to_string(index);
    // A doubled underscore is shown as one; a single one would mark a mnemonic.
    auto label = actions_[index]->title();
    for (auto at = label.find('_'); at != std::string::npos; at = label.find('_', at + 2)) {
        label.insert(at, 1, '_');
    }
    adw_message_dialog_add_response(ADW_MESSAGE_DIALOG(dialog_), id.c_str(), label.c_str());
    if (actions_[index]->style() == UIAlertActionStyle::destructive) {
        adw_message_dialog_set_response_appearance(ADW_MESSAGE_DIALOG(dialog_), id.c_str(),
                                                   ADW_RESPONSE_DESTRUCTIVE);
    }
}

void UIAlertController::answer(const char* response) {
    const auto self = shared(this);  // The presenter may hold the last reference.
    const std::string given(response);
    leaveScreen();
    presentationEnded();
    if (given == noAnswer) {
        return;
    }
    DispatchQueue::main()->async([action = actions_.at(std::stoul(given))] {
        if (action->handler_) {
            action->handler_(action);
        }
    });
}

void UIAlertController::leaveScreen() {
    if (auto* dialog = std::exchange(dialog_, nullptr)) {
        g_signal_handlers_disconnect_by_data(dialog, this);
        gtk_window_destroy(GTK_WINDOW(dialog));
        gdk_display_flush(gtk_widget_get_display(dialog));
        g_object_unref(dialog);
    }
}

}  // namespace orvalo
