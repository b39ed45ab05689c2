#include "ObserverList.h"

namespace tarnbeck {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using List = ObserverList<int>;

class ObserverList_Telling : public ::testing::Test {
  protected:
    List::Observer noting(const std::string& name) {
        return [this, name](int value) { heard_.push_back(name + std::to_string(value)); };
    }

    List list_;
    std::vector<std::string> heard_;
};

TEST_F(ObserverList_Telling, ReachesAllInTheOrderInWhichTheyCame) {
    const auto first = list_.add(noting("a"));
    const auto second = list_.add(noting("b"));
    List::tell(list_.current(), 7);
    EXPECT_THAT(heard_, ElementsAre("a7", "b7"));
}

TEST_F(ObserverList_Telling, PassesOverThoseWhoseTokenHasGone) {
    auto first = list_.add(noting("a"));
    const auto second = list_.add(noting("b"));
    first.reset();
    List::tell(list_.current(), 1);
    EXPECT_THAT(heard_, ElementsAre("b1"));
}

TEST_F(ObserverList_Telling, PassesOverOneWhoseTokenAnEarlierOneLetGo) {
    List::Token later;
    const auto earlier = list_.add([&](int) { later.reset(); });
    later = list_.add(noting("later"));
    List::tell(list_.current(), 1);
    EXPECT_THAT(heard_, IsEmpty());
}

TEST_F(ObserverList_Telling, OneThatIsAddedMeanwhileIsToldFromTheNextTimeOn) {
    List::Token added;
    const auto adding = list_.add([&](int) {
        if (!added) added = list_.add(noting("new"));
    });
    List::tell(list_.current(), 1);
    List::tell(list_.current(), 2);
    EXPECT_THAT(heard_, ElementsAre("new2"));
}

TEST_F(ObserverList_Telling, OneMayLetItsOwnTokenGo) {
    List::Token own;
    own = list_.add([&](int value) {
        own.reset();
        heard_.push_back(std::to_string(value));
    });
    List::tell(list_.current(), 1);
    List::tell(list_.current(), 2);
    EXPECT_THAT(heard_, ElementsAre("1"));
}

}  // namespace
}  // namespace tarnbeck
