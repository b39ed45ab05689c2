// How a callback holds its owner weakly: the owner has an anchor as a member, and hands out what
// leads back to it for as long as it lives. To be followed on the owner's own thread only.
#pragma once

#include <memory>
#include <utility>

namespace tarnbeck {

template <class Owner>
class WeakAnchor {
  public:
    explicit WeakAnchor(Owner& owner) : owner_(std::make_shared<Owner*>(&owner)) {}
    WeakAnchor(const WeakAnchor&) = delete;
    WeakAnchor& operator=(const WeakAnchor&) = delete;

    // `action(owner, arguments…)` as a call that does nothing when the owner has gone.
    template <class Action>
    auto guarded(Action action) const {
        return [weak = std::weak_ptr<Owner*>(owner_), action](auto&&... arguments) {
            if (const auto owner = weak.lock()) {
                action(**owner, std::forward<decltype(arguments)>(arguments)...);
            }
        };
    }

  private:
    std::shared_ptr<Owner*> owner_;
};

}  // namespace tarnbeck
