// Those who want to be told. One observes as long as one holds the token. The list is not
// synchronized; telling needs no list, and so no lock on one.
#pragma once

#include <functional>
#include <memory>
#include <utility>
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

    // The observers of this moment, in the order in which they came.
    using Present = std::vector<std::weak_ptr<Observer>>;
    Present current() {
        std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
        return observers_;
    }

    // Calls each of them. A call may add and remove observers: one that was added is not called
    // yet, and one whose token went meanwhile is called no more.
    static void tell(const Present& observers, const Arguments&... arguments) {
        for (const auto& observer : observers) {
            if (const auto present = observer.lock()) (*present)(arguments...);
        }
    }

  private:
    Present observers_;
};

}  // namespace tarnbeck
