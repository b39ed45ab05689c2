// Whether the system wants a dark or a light appearance, and less motion. Main thread.
#pragma once

#include <QObject>
#include <memory>

namespace tarnbeck {

class Appearance : public QObject {
    Q_OBJECT

  public:
    // Nothing waits for the system: what it says later is told by `changed`. Where it says nothing,
    // the toolkit's palette tells, and without a desktop it is dark.
    explicit Appearance(QObject* parent = nullptr);
    ~Appearance() override;

    bool isDark() const { return isDark_; }
    bool reducesMotion() const { return reducesMotion_; }

  Q_SIGNALS:
    void changed();

  private:
    // What listens to the system, and calls `set`.
    class Source;
    void set(bool isDark, bool reducesMotion);

    bool isDark_ = true;
    bool reducesMotion_ = false;
    std::unique_ptr<Source> source_;
};

}  // namespace tarnbeck
