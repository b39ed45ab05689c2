// A list that is never changed once it is made, shared by all who hold it. Copying one costs a
// reference count, whatever it holds, so that a snapshot of hundreds of repositories can be handed
// around freely. Safe to read from any number of threads.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <memory>
#include <utility>
#include <vector>

namespace tarnbeck {

template <class Element>
class ImmutableList {
  public:
    using value_type = Element;
    using const_iterator = const Element*;

    ImmutableList() = default;
    ImmutableList(std::vector<Element> elements) {
        if (elements.empty()) return;
        elements.shrink_to_fit();
        elements_ = std::make_shared<const std::vector<Element>>(std::move(elements));
    }
    ImmutableList(std::initializer_list<Element> elements)
        : ImmutableList(std::vector<Element>(elements)) {}

    const_iterator begin() const { return elements_ ? elements_->data() : nullptr; }
    const_iterator end() const { return begin() + size(); }
    std::size_t size() const { return elements_ ? elements_->size() : 0; }
    bool empty() const { return !elements_; }
    const Element& operator[](std::size_t index) const { return (*elements_)[index]; }

    friend bool operator==(const ImmutableList& left, const ImmutableList& right) {
        if (left.elements_ == right.elements_) return true;
        if (!left.elements_ || !right.elements_) return false;
        return *left.elements_ == *right.elements_;
    }

  private:
    std::shared_ptr<const std::vector<Element>> elements_;  // absent when empty
};

}  // namespace tarnbeck
