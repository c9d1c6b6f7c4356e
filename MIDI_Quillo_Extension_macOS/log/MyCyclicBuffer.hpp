// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/FatalError.hpp"

namespace quillo {

/// A collection of log entries that can be emptied by `clear()`.
template <class Container>
concept LogContainer = requires(Container container) { container.clear(); };

static_assert(LogContainer<std::vector<int>>);

/// The slots of a `MyCyclicBuffer`, shared by its copies. Empty slots hold nothing.
template <class Element>
class RefData {
public:
    explicit RefData(std::size_t capacity) : data(capacity) {}

    std::vector<std::optional<Element>> data;
};

/// A ring of fixed capacity that keeps the newest entries, oldest first, and drops the oldest without a word.
///
/// Copies share their slots while each keeps its own start and size: an append through one writes into the
/// slots of all. Not safe for use from several threads.
template <class Element>
class MyCyclicBuffer {
public:
    class Iterator;
    using value_type = Element;
    using const_iterator = Iterator;

    explicit MyCyclicBuffer(std::size_t capacity) : data_(std::make_shared<RefData<Element>>(capacity)) {}

    /// Adds the newest entry; a full buffer forgets its oldest. A buffer of capacity 0 is a fatal error.
    void append(Element entry) {
        const auto capacity = data_->data.size();
        if (capacity == 0) {
            fatalError("an entry was appended to a log without room");
        }
        data_->data[slot(size_)] = std::move(entry);
        if (size_ < capacity) {
            ++size_;
        } else {
            start_ = (start_ + 1) % size_;
        }
    }

    /// The slot of the oldest entry.
    [[nodiscard]] std::size_t start() const { return start_; }
    [[nodiscard]] std::size_t size() const { return size_; }
    [[nodiscard]] bool empty() const { return size_ == 0; }
    [[nodiscard]] std::size_t capacity() const { return data_->data.size(); }

    /// The entry at `index`, the oldest at 0. The index is not compared with the size; reading an empty slot
    /// is a fatal error.
    [[nodiscard]] const Element& operator[](std::size_t index) const {
        if (capacity() == 0 || !data_->data[slot(index)]) {
            fatalError("a log was read where it holds no entry");
        }
        return *data_->data[slot(index)];
    }

    [[nodiscard]] Iterator begin() const { return Iterator(data_, start_, 0); }
    [[nodiscard]] Iterator end() const { return Iterator(data_, start_, size_); }

    /// Forgets all entries; the slots stay as they are.
    void clear() { size_ = 0; }

private:
    [[nodiscard]] std::size_t slot(std::size_t index) const { return (start_ + index) % data_->data.size(); }

    std::size_t start_ = 0;
    std::size_t size_ = 0;
    std::shared_ptr<RefData<Element>> data_;
};

/// Walks from the oldest entry to the newest that the buffer held when the iterator was made.
template <class Element>
class MyCyclicBuffer<Element>::Iterator {
public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = Element;
    using difference_type = std::ptrdiff_t;
    using pointer = const Element*;
    using reference = const Element&;

    Iterator() = default;
    Iterator(std::shared_ptr<RefData<Element>> ref, std::size_t start, std::size_t offset)
        : ref_(std::move(ref)), start_(start), offset_(offset) {}

    reference operator*() const { return *ref_->data[(start_ + offset_) % ref_->data.size()]; }
    pointer operator->() const { return &**this; }
    Iterator& operator++() {
        ++offset_;
        return *this;
    }
    Iterator operator++(int) {
        auto before = *this;
        ++*this;
        return before;
    }
    bool operator==(const Iterator&) const = default;

private:
    std::shared_ptr<RefData<Element>> ref_;
    std::size_t start_ = 0;
    std::size_t offset_ = 0;
};

static_assert(LogContainer<MyCyclicBuffer<int>>);

}  // namespace quillo
