#pragma once

#include <glib-object.h>
#include <glib.h>

#include <memory>

namespace orvalo {

/// A deleter that calls a C library's function.
template <auto function>
struct Release {
    template <typename Object>
    void operator()(Object* object) const noexcept {
        function(object);
    }
};

/// Owned objects of GLib.
using GText = std::unique_ptr<char, Release<g_free>>;
using GErrorPointer = std::unique_ptr<GError, Release<g_error_free>>;
using GUriPointer = std::unique_ptr<GUri, Release<g_uri_unref>>;
using GBytesPointer = std::unique_ptr<GBytes, Release<g_bytes_unref>>;

/// Removes the source from its context, where it is attached to one.
struct SourceDeleter {
    void operator()(GSource* source) const noexcept {
        g_source_destroy(source);
        g_source_unref(source);
    }
};
using GSourcePointer = std::unique_ptr<GSource, SourceDeleter>;

/// One owned reference to an object of GObject, GIO or GTK.
template <typename Type>
using GObjectPointer = std::unique_ptr<Type, Release<g_object_unref>>;

}  // namespace orvalo
