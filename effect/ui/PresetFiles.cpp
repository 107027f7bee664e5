#include "effect/ui/PresetFiles.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <set>
#include <system_error>
#include <utility>

namespace orvalo::effect::ui {

namespace {

namespace fs = std::filesystem;

/// The time that a host has to write a preset, in seconds.
constexpr double patience = 5.0;

/// Where hosts save presets. Empty for a user without a home.
fs::path userFolder() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no code of the UI changes the environment
    const char* home = std::getenv("HOME");
    return home == nullptr || *home == '\0' ? fs::path() : fs::path(home) / ".lv2";
}

/// The name in letters, and of a length, that every file system takes.
std::string fileName(const std::string& name) {
    constexpr std::size_t most = 60;
    std::string result = "orvalo-";
    for (const char c : name.substr(0, most)) {
        const bool isPlain =
            (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-';
        result += isPlain ? c : '_';
    }
    return result;
}

auto isIn(const fs::path& folder) {
    return [folder](const auto& one) { return one.folder == folder; };
}

/// Returns "" if the work throws nothing.
template <typename Work>
std::string complaintOf(const char* what, const Work& work) {
    try {
        work();
    } catch (const std::system_error& error) {
        return std::string(what) + ": " + error.code().message();
    }
    return {};
}

}  // namespace

PresetFiles::PresetFiles(const fs::path& bundle, const PresetWriter* writer)
    : user_(userFolder()), writer_(writer) {
    for (auto& stored : readBundle(bundle)) {
        stored.preset.isUser = false;
        factory_.push_back(std::move(stored.preset));
    }
}

std::vector<StoredPreset> PresetFiles::stored() const {
    auto result = readBundles(user_);
    for (const auto& awaited : awaited_) {
        std::erase_if(result, isIn(awaited.folder));
        if (awaited.preset) {
            result.push_back({*awaited.preset, awaited.folder});
        }
    }
    return result;
}

std::vector<Preset> PresetFiles::read() {
    std::vector<Preset> users;
    std::set<std::string> names;
    for (auto& one : stored()) {
        if (names.insert(one.preset.name).second) {
            users.push_back(std::move(one.preset));
        }
    }
    std::ranges::sort(users, {}, &Preset::name);
    std::vector<Preset> result = factory_;
    std::ranges::move(users, std::back_inserter(result));
    return result;
}

fs::path PresetFiles::newFolder(const std::string& name) const {
    for (int number = 1;; ++number) {
        const auto suffix = number == 1 ? "" : "-" + std::to_string(number);
        fs::path folder = user_ / (fileName(name) + suffix + ".preset.lv2");
        const auto awaited = std::ranges::find(awaited_, folder, &Awaited::folder);
        const bool isTaken = awaited == awaited_.end() ? fs::exists(fs::symlink_status(folder))
                                                       : awaited->preset.has_value();
        if (!isTaken) {
            return folder;
        }
    }
}

void PresetFiles::await(Awaited awaited) {
    std::erase_if(awaited_, isIn(awaited.folder));
    awaited_.push_back(std::move(awaited));
}

void PresetFiles::write(const fs::path& folder, const Preset& preset) {
    if (writer_ == nullptr) {
        writeBundle(folder, preset);
        return;
    }
    std::vector<const char*> symbols;
    std::vector<float> values;
    for (const auto& [parameter, value] : preset.values) {
        symbols.push_back(range(parameter).symbol);
        values.push_back(value);
    }
    if (writer_->write(writer_->handle, folder.filename().c_str(), preset.name.c_str(),
                       preset.description.c_str(), static_cast<std::uint32_t>(values.size()),
                       symbols.data(), values.data()) != 0) {
        throw std::system_error(std::make_error_code(std::errc::operation_not_permitted));
    }
    await({preset.name, folder, preset});
}

void PresetFiles::erase(const fs::path& folder, const std::string& name) {
    if (writer_ == nullptr) {
        removeBundle(folder);
        return;
    }
    if (writer_->remove(writer_->handle, folder.filename().c_str()) != 0) {
        throw std::system_error(std::make_error_code(std::errc::operation_not_permitted));
    }
    await({name, folder, std::nullopt});
}

std::string PresetFiles::save(const Preset& preset, const std::string& replaced) {
    if (user_.empty()) {
        return "Not saved: no home folder";
    }
    return complaintOf("Not saved", [&] {
        const auto all = stored();
        const auto isCalled = [&](const std::string& name) {
            return std::ranges::find_if(all, [&](const StoredPreset& one) {
                return one.preset.isUser && one.preset.name == name;
            });
        };
        auto place = isCalled(replaced);
        if (place == all.end()) {
            place = isCalled(preset.name);
        }
        const fs::path folder = place == all.end() ? newFolder(preset.name) : place->folder;
        write(folder, preset);
        // Hosts may have saved others with the name.
        for (const auto& one : all) {
            const bool isReplaced = one.preset.name == preset.name || one.preset.name == replaced;
            if (one.preset.isUser && isReplaced && one.folder != folder) {
                erase(one.folder, one.preset.name);
            }
        }
    });
}

std::string PresetFiles::remove(const std::string& name) {
    return complaintOf("Not deleted", [&] {
        for (const auto& one : stored()) {
            if (one.preset.isUser && one.preset.name == name) {
                erase(one.folder, name);
            }
        }
    });
}

std::string PresetFiles::check(double now) {
    const auto present = readBundles(user_);
    std::string complaint;
    std::erase_if(awaited_, [&](Awaited& one) {
        const auto found = std::ranges::find_if(present, isIn(one.folder));
        const bool isDone = one.preset ? found != present.end() && found->preset == *one.preset
                                       : found == present.end();
        one.until = one.until.value_or(now + patience);
        if (!isDone && now > *one.until) {
            complaint = "\"" + one.name + "\" is not " + (one.preset ? "saved" : "deleted") +
                        ": the host did not do it";
            return true;
        }
        return isDone;
    });
    return complaint;
}

}  // namespace orvalo::effect::ui
