// Where the parts of a section put their rows. One sink keeps them, the other notes their kinds
// alone, so that the height of a section follows from the very code that makes its rows.
#pragma once

#include <vector>

#include "Row.h"

namespace tarnbeck {

class RowSink {
  public:
    explicit RowSink(std::vector<Row>& rows) : rows_(&rows) {}
    explicit RowSink(std::vector<Row::Kind>& kinds) : kinds_(&kinds) {}

    // `make()` is called only where the row itself is wanted.
    template <class Make>
    void add(Row::Kind kind, Make make) {
        if (kinds_) {
            kinds_->push_back(kind);
        } else {
            rows_->push_back(make());
            rows_->back().kind = kind;
        }
    }

  private:
    std::vector<Row>* rows_ = nullptr;  // exactly one of them is there
    std::vector<Row::Kind>* kinds_ = nullptr;
};

}  // namespace tarnbeck
