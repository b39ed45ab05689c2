// A visitor of a variant, written as one lambda a case; a case left out does not compile.
#pragma once

namespace tarnbeck {

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

}  // namespace tarnbeck
