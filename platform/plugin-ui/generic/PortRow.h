#pragma once

#include <gtk/gtk.h>

#include <functional>

#include "platform/plugin-ui/generic/PortPresentation.h"

namespace orvalo {

/// The row of one control port: its name, and a control for an input or a meter for an output. Main
/// thread.
class PortRow {
  public:
    enum class Form {
        row,      ///< With the port's name and value.
        control,  ///< The control alone, for assistive technology: a choice is a slider.
    };

    /// set: gets each value that the user sets.
    PortRow(PortPresentation port, std::function<void(float)> set, Form form = Form::row);
    /// The row's widget must not be used any more.
    ~PortRow();
    PortRow(const PortRow&) = delete;
    PortRow& operator=(const PortRow&) = delete;

    const PortPresentation& port() const { return port_; }
    GtkWidget* widget() const { return row_ == nullptr ? control_ : row_; }
    /// Shows the plug-in's value, unless the user has just set another one.
    void show(float value);

  private:
    GtkWidget* makeControl();
    void makeRow();
    GtkWidget* makeScale();
    GtkWidget* makeSwitch();
    GtkWidget* makeChoice();
    GtkWidget* makeTrigger();
    static GtkWidget* makeMeter();
    /// Whether the scale counts in places between the minimum and the maximum.
    bool countsPlaces() const { return form_ == Form::row && port_.isLogarithmic; }
    float valueOfScale() const;
    void userSets(float value);
    void showNow(float value);

    const PortPresentation port_;
    const std::function<void(float)> set_;
    const Form form_;
    GtkWidget* row_ = nullptr;  // Null in the form of a control.
    GtkWidget* control_ = nullptr;
    GtkWidget* text_ = nullptr;  // Null for switches, choices and triggers.
    float shown_;
    bool isShowing_ = false;  // The control changes because of show().
    gint64 userSetTime_ = 0;  // As g_get_monotonic_time(); 0 for never.
};

}  // namespace orvalo
