#include "platform/foundation/defaults/DefaultsStorage.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "platform/foundation/NSError.h"
#include "platform/foundation/defaults/DamagedFile.h"
#include "platform/foundation/defaults/PrivateFile.h"
#include "platform/foundation/defaults/SQLiteError.h"

namespace orvalo {

namespace {

constexpr int kMostAttempts = 3;
// To open the file anew takes as long as some hundred looks at it.
constexpr int kLooksToTryAgain = 256;

bool isOdd(std::uint64_t count) {
    return (count & 1U) != 0;
}

/// Where a file lies whose name may be a link: beside it are its log and its counter.
std::string placeOf(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) {
        return path;
    }
    const auto place = std::filesystem::canonical(path, error);
    return error ? path : place.string();
}

/// Whether what is there can be read all the same.
bool keepsFromWritingAlone(const NSError& error) {
    constexpr std::array reasons{EROFS, EACCES, EPERM, ENOSPC, EDQUOT, EFBIG};
    return error.domain() == "NSPOSIXErrorDomain" &&
           std::ranges::find(reasons, error.code()) != reasons.end();
}

}  // namespace

void DefaultsStorage::close() {
    if (mark() != nullptr && !counter_->isInPlace()) {
        // Whoever maps it, too, would not hear of those who write from now on.
        mark()->haveAllLook();
    }
    file_.reset();
    counter_.reset();
    counterTrouble_.reset();
    looks_ = 0;
    agreed_ = 1;
}

void DefaultsStorage::openCounter() {
    auto place = placeOf(path_);
    if (counter_ && counter_->isInPlace() && place == place_) {
        return;
    }
    close();
    place_ = std::move(place);
    makePrivateFolder(std::filesystem::path(path_).parent_path());
    try {
        counter_ = std::make_unique<ChangeCounter>(place_ + "-changes");
    } catch (const NSError& error) {
        if (!keepsFromWritingAlone(error)) {
            throw;
        }
        counterTrouble_ = error;
    }
}

bool DefaultsStorage::isOpen() const {
    return file_ && file_->isInPlace() && (!counter_ || counter_->isInPlace()) &&
           placeOf(path_) == place_;
}

ChangeMapping* DefaultsStorage::mark() const {
    return counter_ && counter_->mapping()->isWritable() ? counter_->mapping().get() : nullptr;
}

bool DefaultsStorage::isWritable() const {
    return mark() != nullptr && !file_->isReadOnly();
}

void DefaultsStorage::refuseWrite() const {
    if (counterTrouble_) {
        throw NSError(*counterTrouble_);
    }
    if (file_ && file_->trouble()) {
        throw NSError(*file_->trouble());
    }
    const auto culprit = file_ && file_->isReadOnly() ? place_ : place_ + "-changes";
    throw NSError::posix(access(culprit.c_str(), W_OK) == 0 ? EROFS : errno, culprit);
}

DefaultsStorage::Update DefaultsStorage::update() {
    const auto mapping = counter_ ? counter_->mapping() : nullptr;
    // Read before the entries: what is written meanwhile is looked at once more.
    const auto count = mapping ? mapping->count() : 0;
    Update update{file_->changes(), mapping, count};
    agreed_ = count;
    return update;
}

void DefaultsStorage::openFile() {
    if (file_ && file_->isInPlace()) {
        return;
    }
    file_.reset();
    agreed_ = 1;
    if (mark() == nullptr && !std::filesystem::exists(place_)) {
        refuseWrite();
    }
    file_ = std::make_unique<DefaultsFile>(place_, mark());
}

void DefaultsStorage::endWriteOfDeadProcess() const {
    const auto& mapping = counter_->mapping();
    if (isOdd(mapping->count()) && mapping->isWritable()) {
        const ChangeCounter::Write ended(*mapping);
    }
}

DefaultsStorage::Update DefaultsStorage::underLock(const std::function<Update()>& operation) {
    for (int attempt = 1;; ++attempt) {
        openCounter();
        std::optional<ChangeCounter::Lock> lock;
        if (counter_) {
            lock.emplace(counter_->lock());
            if (!counter_->isInPlace() && attempt < kMostAttempts) {
                continue;
            }
            endWriteOfDeadProcess();
        }
        try {
            openFile();
            return operation();
        } catch (const SQLiteError& error) {
            if (!error.isDamage() || attempt == kMostAttempts) {
                if (file_) {
                    file_->forgetChanges();
                    agreed_ = 1;
                }
                throw;
            }
            file_.reset();
            setAsideIfDamaged();
        }
    }
}

void DefaultsStorage::setAsideIfDamaged() {
    try {
        DefaultsFile(place_, mark()).verify();
    } catch (const SQLiteError& error) {
        if (!error.isDamage() || mark() == nullptr) {
            throw;
        }
        // The others find out that theirs is no longer in place when they look.
        const ChangeCounter::Write write(*mark());
        setDatabaseAside(path_);  // The name: what it leads to is left alone.
    }
}

DefaultsStorage::Update DefaultsStorage::refresh() {
    if (!counter_ && ++looks_ == kLooksToTryAgain) {
        close();  // There may be a counter by now, and so an end of looking.
    }
    if (isOpen()) {
        if (counter_ && isOdd(counter_->mapping()->count())) {
            if (const auto lock = counter_->tryLock()) {
                endWriteOfDeadProcess();
            }
        }
        try {
            return update();
        } catch (const SQLiteError& error) {
            if (!error.isDamage()) {
                throw;
            }
            file_.reset();
        }
    }
    return underLock([this] { return update(); });
}

DefaultsStorage::Update DefaultsStorage::put(std::string_view key,
                                             std::optional<std::span<const std::uint8_t>> value) {
    return written([&] { file_->put(key, value); });
}

DefaultsStorage::Update DefaultsStorage::putAll(std::span<const BinaryEntry> entries,
                                                bool replaces) {
    return written([&] { file_->putAll(entries, replaces); });
}

DefaultsStorage::Update DefaultsStorage::written(const std::function<void()>& operation) {
    if (file_ && !isWritable()) {
        close();  // It may be writable by now.
    }
    return underLock([&] {
        if (!isWritable()) {
            refuseWrite();
        }
        const auto& mapping = counter_->mapping();
        auto others = mapping->count() == agreed_ ? Update{{}, mapping, 0} : update();
        {
            const ChangeCounter::Write write(*mapping);
            operation();
        }
        others.count = agreed_ = mapping->count();
        return others;
    });
}

}  // namespace orvalo
