// Those who want to be told. One observes as long as one holds the token. Not synchronized.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace tarnbeck {

template <class... Arguments>
class ObserverList {
  public:
    using Observer = std::function<void(Arguments...)>;
    using Token = std::shared_ptr<void>;

    [[nodiscard]] Token add(Observer observer) {
        auto token = std::make_shared<Observer>(std::move(observer));
        observers_.push_back(token);
        return token;
    }

    // The observers of this moment, in the order in which they came: a call may add and remove.
    std::vector<std::shared_ptr<Observer>> current() {
        std::vector<std::shared_ptr<Observer>> present;
        std::erase_if(observers_, [&](const std::weak_ptr<Observer>& observer) {
            if (auto held = observer.lock()) present.push_back(std::move(held));
            return observer.expired();
        });
        return present;
    }

  private:
    std::vector<std::weak_ptr<Observer>> observers_;
};

}  // namespace tarnbeck
