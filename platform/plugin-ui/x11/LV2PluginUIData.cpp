#include "platform/plugin-ui/x11/LV2PluginUIData.h"

#include <lv2/core/lv2.h>
#include <lv2/data-access/data-access.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/ui/ui.h>
#include <suil/suil.h>

#include "platform/audio/lv2/LV2DataChecks.h"
#include "platform/plugin-ui/x11/LV2PluginUIFeatures.h"

namespace orvalo {

namespace {

// Two names of one statement, both in use, neither in the header.
constexpr const char* kMakeResident = LV2_UI_PREFIX "makeResident";
constexpr const char* kMakeNameResident = LV2_UI_PREFIX "makeSONameResident";

/// Reads the data of one UI from lilv.
class Reader {
  public:
    Reader(const LV2World::Access& access, const LV2PluginData& plugin, const LilvUI* ui)
        : access_(access), plugin_(plugin), ui_(ui) {}

    LV2PluginUIData read() const {
        requireSoundFiles(values(LILV_NS_RDFS "seeAlso").get(), plugin_.uri, pluginUIError);
        lilv_world_load_resource(access_.lilv(), lilv_ui_get_uri(ui_));
        LV2PluginUIData data;
        data.plugin = plugin_.uri;
        data.uri = lilv_node_as_uri(lilv_ui_get_uri(ui_));
        data.bundle = pathOf(lilv_ui_get_bundle_uri(ui_));
        data.binary = pathOf(lilv_ui_get_binary_uri(ui_));
        if (data.binary.empty() || data.bundle.empty()) {
            throw pluginUIError(LV2ErrorCode::noLibrary, plugin_.uri, "its data name no library");
        }
        const LilvPointer<LilvNode> name(lilv_plugin_get_name(access_.plugin(plugin_.uri)));
        data.title = name == nullptr ? plugin_.uri : lilv_node_as_string(name.get());
        requireOffered(values(LV2_CORE__requiredFeature).get(), "feature",
                       LV2PluginUIFeatures::isOffered, plugin_.uri, pluginUIError);
        requireOffered(values(LV2_OPTIONS__requiredOption).get(), "option",
                       LV2PluginUIOptions::isOffered, plugin_.uri, pluginUIError);
        data.isFixedSize = mentions(LV2_UI__fixedSize) || mentions(LV2_UI__noUserResize);
        data.accessesInstance = mentions(LV2_INSTANCE_ACCESS_URI) || mentions(LV2_DATA_ACCESS_URI);
        data.staysLoaded = mentions(kMakeResident) || mentions(kMakeNameResident);
        readNotifications(data);
        return data;
    }

  private:
    LilvPointer<LilvNodes> values(const char* predicate) const {
        return LilvPointer<LilvNodes>(lilv_world_find_nodes(access_.lilv(), lilv_ui_get_uri(ui_),
                                                            access_.uri(predicate).get(), nullptr));
    }

    bool mentions(const std::string& feature) const {
        const auto node = access_.uri(feature.c_str());
        return lilv_nodes_contains(values(LV2_CORE__requiredFeature).get(), node.get()) ||
               lilv_nodes_contains(values(LV2_CORE__optionalFeature).get(), node.get());
    }

    void readNotifications(LV2PluginUIData& data) const {
        const auto nodes = values(LV2_UI__portNotification);
        LILV_FOREACH(nodes, i, nodes.get()) {
            const auto* node = lilv_nodes_get(nodes.get(), i);
            if (!lilv_node_is_uri(node) && !lilv_node_is_blank(node)) {
                continue;
            }
            const auto value = [this, node](const char* predicate) {
                return LilvPointer<LilvNode>(
                    lilv_world_get(access_.lilv(), node, access_.uri(predicate).get(), nullptr));
            };
            const auto plugin = value(LV2_UI__plugin);
            const bool isForAnother = plugin != nullptr && lilv_node_is_uri(plugin.get()) &&
                                      plugin_.uri != lilv_node_as_uri(plugin.get());
            const auto index = value(LV2_UI__portIndex);
            const auto symbol = value(LV2_CORE__symbol);
            for (const auto& port : plugin_.ports) {
                const bool isMeant =
                    (index != nullptr && lilv_node_is_int(index.get()) &&
                     lilv_node_as_int(index.get()) == static_cast<int>(port.index)) ||
                    (symbol != nullptr && lilv_node_as_string(symbol.get()) == port.symbol);
                if (isMeant && !isForAnother && !port.isInput &&
                    port.kind == LV2PortKind::sequence) {
                    data.notifiedPorts.push_back(port.index);
                }
            }
        }
    }

    const LV2World::Access& access_;
    const LV2PluginData& plugin_;
    const LilvUI* ui_;
};

/// Appends the short names of a UI's kinds, such as "Gtk3UI".
void addKinds(const LilvUI* ui, std::string& kinds) {
    LILV_FOREACH(nodes, i, lilv_ui_get_classes(ui)) {
        const std::string kind = lilv_node_as_string(lilv_nodes_get(lilv_ui_get_classes(ui), i));
        kinds += (kinds.empty() ? "" : ", ") + kind.substr(kind.find_last_of("#/") + 1);
    }
}

}  // namespace

NSError pluginUIError(LV2ErrorCode code, const std::string& plugin, const std::string& reason) {
    return {"LV2", static_cast<std::int64_t>(code),
            "The UI of <" + plugin + "> cannot be shown: " + reason + "."};
}

LV2PluginUIData LV2PluginUIData::read(LV2World& world, const LV2PluginData& plugin) {
    const LV2World::Access access(world);
    const auto* found = access.plugin(plugin.uri);
    const std::unique_ptr<LilvUIs, void (*)(LilvUIs*)> uis(
        found == nullptr ? nullptr : lilv_plugin_get_uis(found), lilv_uis_free);
    const auto x11 = access.uri(LV2_UI__X11UI);
    std::string kinds;
    LILV_FOREACH(uis, i, uis.get()) {
        const auto* ui = lilv_uis_get(uis.get(), i);
        if (lilv_ui_is_a(ui, x11.get()) && suil_ui_supported(LV2_UI__X11UI, LV2_UI__X11UI) == 1) {
            return Reader(access, plugin, ui).read();
        }
        addKinds(ui, kinds);
    }
    throw pluginUIError(LV2ErrorCode::noPluginUI, plugin.uri,
                        kinds.empty() ? "the plug-in has none" : "it is no X11UI but " + kinds);
}

}  // namespace orvalo
