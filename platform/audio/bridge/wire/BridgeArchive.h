#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

namespace orvalo {

/// A field that is copied byte for byte.
template <typename Value>
concept Plain = std::is_arithmetic_v<Value>;

/// Appends fields in the machine's own representation: the reader is a program of the same build on
/// the same machine.
class BridgeWriter {
  public:
    template <typename... Fields>
    void operator()(const Fields&... fields) {
        (put(fields), ...);
    }

    const std::vector<std::byte>& bytes() const { return bytes_; }

  private:
    void put(const void* data, std::size_t size) {
        const auto* from = static_cast<const std::byte*>(data);
        bytes_.insert(bytes_.end(), from, from + size);
    }
    template <Plain Value>
    void put(const Value& value) {
        put(&value, sizeof(value));
    }
    void put(const std::string& text) {
        put(static_cast<std::uint32_t>(text.size()));
        put(text.data(), text.size());
    }
    template <typename Element>
    void put(const std::vector<Element>& list) {
        put(static_cast<std::uint32_t>(list.size()));
        for (const auto& element : list) {
            put(element);
        }
    }
    template <typename Record>
    requires requires(const Record& record, BridgeWriter& writer) { record.fields(writer); }
    void put(const Record& record) { record.fields(*this); }

    std::vector<std::byte> bytes_;
};

/// Reads fields from untrusted bytes. A field beyond the end keeps its value, and isWhole() is
/// false from then on.
class BridgeReader {
  public:
    explicit BridgeReader(std::span<const std::byte> bytes) : bytes_(bytes) {}

    template <typename... Fields>
    void operator()(Fields&... fields) {
        (take(fields), ...);
    }

    /// Whether all fields were there and no bytes are left.
    bool isWhole() const { return !isShort_ && bytes_.empty(); }

  private:
    bool take(void* data, std::size_t size) {
        if (isShort_ || size > bytes_.size()) {
            isShort_ = true;
            return false;
        }
        std::memcpy(data, bytes_.data(), size);
        bytes_ = bytes_.subspan(size);
        return true;
    }
    void take(bool& value) {
        std::uint8_t byte = 0;
        take(&byte, sizeof(byte));
        isShort_ = isShort_ || byte > 1;
        value = byte == 1;
    }
    template <Plain Value>
    void take(Value& value) {
        take(&value, sizeof(value));
    }
    std::uint32_t takeCount() {
        std::uint32_t count = 0;
        take(count);
        // An element has at least one byte.
        isShort_ = isShort_ || count > bytes_.size();
        return isShort_ ? 0 : count;
    }
    void take(std::string& text) {
        text.resize(takeCount());
        if (!text.empty()) {
            take(text.data(), text.size());
        }
    }
    template <typename Element>
    void take(std::vector<Element>& list) {
        list.clear();
        for (auto count = takeCount(); count > 0 && !isShort_; --count) {
            take(list.emplace_back());
        }
    }
    template <typename Record>
    requires requires(Record& record, BridgeReader& reader) { record.fields(reader); }
    void take(Record& record) { record.fields(*this); }

    std::span<const std::byte> bytes_;
    bool isShort_ = false;
};

}  // namespace orvalo
