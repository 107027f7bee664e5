#include "effect/ui/PresetFiles.h"

#include <algorithm>
#include <cstdlib>
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

std::vector<Preset> PresetFiles::read() {
    std::vector<Preset> users;
    std::set<std::string> names;
    for (auto& stored : readBundles(user_)) {
        if (names.insert(stored.preset.name).second) {
            users.push_back(std::move(stored.preset));
        }
    }
    for (const auto& awaited : awaited_) {
        std::erase_if(users, [&](const Preset& one) { return one.name == awaited.name; });
        if (awaited.preset) {
            users.push_back(*awaited.preset);
        }
    }
    std::sort(users.begin(), users.end(),
              [](const Preset& one, const Preset& other) { return one.name < other.name; });
    std::vector<Preset> result = factory_;
    std::move(users.begin(), users.end(), std::back_inserter(result));
    return result;
}

fs::path PresetFiles::folderFor(const std::string& name,
                                const std::vector<StoredPreset>& stored) const {
    const auto isOwn = [&](const fs::path& folder) {
        const auto names = [&](const StoredPreset& one) {
            return one.folder == folder && one.preset.isUser && one.preset.name == name;
        };
        return std::any_of(stored.begin(), stored.end(), names) ||
               std::any_of(awaited_.begin(), awaited_.end(), [&](const Awaited& one) {
                   return one.folder == folder && one.name == name;
               });
    };
    const auto isTaken = [&](const fs::path& folder) {
        return fs::exists(fs::symlink_status(folder)) ||
               std::any_of(awaited_.begin(), awaited_.end(),
                           [&](const Awaited& one) { return one.folder == folder; });
    };
    for (int number = 1;; ++number) {
        const auto suffix = number == 1 ? "" : "-" + std::to_string(number);
        fs::path folder = user_ / (fileName(name) + suffix + ".preset.lv2");
        if (isOwn(folder) || !isTaken(folder)) {
            return folder;
        }
    }
}

void PresetFiles::write(const fs::path& folder, const Preset& preset) {
    if (writer_ == nullptr) {
        writeBundle(folder, preset);
        return;
    }
    std::vector<const char*> symbols;
    std::vector<float> values;
    for (const auto& [parameter, value] : preset.values) {
        symbols.push_back(parameterRanges.at(static_cast<std::size_t>(parameter)).symbol);
        values.push_back(value);
    }
    if (writer_->write(writer_->handle, folder.filename().c_str(), preset.name.c_str(),
                       preset.description.c_str(), static_cast<std::uint32_t>(values.size()),
                       symbols.data(), values.data()) != 0) {
        throw std::system_error(std::make_error_code(std::errc::operation_not_permitted));
    }
    std::erase_if(awaited_, [&](const Awaited& one) { return one.name == preset.name; });
    awaited_.push_back({preset.name, folder, preset});
}

void PresetFiles::erase(const fs::path& folder, const std::string& name) {
    if (writer_ == nullptr) {
        removeBundle(folder);
        return;
    }
    if (writer_->remove(writer_->handle, folder.filename().c_str()) != 0) {
        throw std::system_error(std::make_error_code(std::errc::operation_not_permitted));
    }
    std::erase_if(awaited_, [&](const Awaited& one) { return one.name == name; });
    awaited_.push_back({name, folder, std::nullopt});
}

std::string PresetFiles::save(const Preset& preset) {
    if (user_.empty()) {
        return "Not saved: no home folder";
    }
    return complaintOf("Not saved", [&] {
        const auto stored = readBundles(user_);
        const fs::path folder = folderFor(preset.name, stored);
        // Of other hosts; what is written below counts.
        for (const auto& one : stored) {
            if (one.preset.isUser && one.preset.name == preset.name && one.folder != folder) {
                erase(one.folder, preset.name);
            }
        }
        write(folder, preset);
    });
}

std::string PresetFiles::remove(const std::string& name) {
    return complaintOf("Not deleted", [&] {
        std::set<fs::path> folders;
        for (const auto& one : readBundles(user_)) {
            if (one.preset.isUser && one.preset.name == name) {
                folders.insert(one.folder);
            }
        }
        for (const auto& one : awaited_) {
            if (one.preset && one.name == name) {
                folders.insert(one.folder);
            }
        }
        for (const auto& folder : folders) {
            erase(folder, name);
        }
    });
}

std::string PresetFiles::check(double now) {
    const auto stored = readBundles(user_);
    std::string complaint;
    std::erase_if(awaited_, [&](Awaited& one) {
        const auto found =
            std::find_if(stored.begin(), stored.end(), [&](const StoredPreset& other) {
                return other.preset.name == one.name && other.preset.isUser;
            });
        const bool isDone = one.preset ? found != stored.end() && found->preset == *one.preset
                                       : found == stored.end();
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
