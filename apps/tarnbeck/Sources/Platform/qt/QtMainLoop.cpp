#include "QtMainLoop.h"

#include <QBasicTimer>
#include <QCoreApplication>
#include <QEvent>
#include <QSocketNotifier>
#include <QThread>
#include <QTimerEvent>
#include <algorithm>
#include <array>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

#include "ArrivedSignals.h"
#include "Pipe.h"

namespace tarnbeck {
namespace {

void makeNonBlocking(const FileDescriptor& descriptor) {
    fcntl(descriptor.get(), F_SETFL, fcntl(descriptor.get(), F_GETFL) | O_NONBLOCK);
}

}  // namespace

// What Qt calls back.
class QtMainLoop::Receiver : public QObject {
  public:
    explicit Receiver(QtMainLoop& loop) : loop_(loop) {}

    // Any thread.
    void askForTurn() { QCoreApplication::postEvent(this, new QEvent(QEvent::User)); }
    // After other events have had theirs. Main thread.
    void askForLaterTurn() { turn_.start(0, this); }
    void wakeAfter(std::chrono::milliseconds delay) {
        due_.start(static_cast<int>(delay.count()), Qt::PreciseTimer, this);
    }
    void sleep() { due_.stop(); }

  protected:
    void customEvent(QEvent* /*event*/) override { loop_.runPosted(); }
    void timerEvent(QTimerEvent* event) override {
        if (event->timerId() == turn_.timerId()) {
            turn_.stop();
            loop_.runPosted();
        } else if (event->timerId() == due_.timerId()) {
            loop_.runDueTimers();
        }
    }

  private:
    QtMainLoop& loop_;
    QBasicTimer turn_;
    QBasicTimer due_;
};

QtMainLoop::QtMainLoop() : receiver_(std::make_unique<Receiver>(*this)) {}

QtMainLoop::~QtMainLoop() {
    if (signalNotifier_) stopWakingFor(signalWrite_.get());
}

WallTime QtMainLoop::wallNow() const {
    return std::chrono::system_clock::now();
}

SteadyTime QtMainLoop::steadyNow() const {
    return std::chrono::steady_clock::now();
}

void QtMainLoop::post(Task task) {
    const std::lock_guard lock(mutex_);
    posted_.push_back(std::move(task));
    if (std::exchange(turnIsDue_, true)) return;
    // Qt handles all events of its list before it looks at timers and windows, those that join it
    // meanwhile too: what a task posts must not join it.
    if (runsPosted_ && QThread::currentThread() == receiver_->thread()) {
        receiver_->askForLaterTurn();
    } else {
        receiver_->askForTurn();
    }
}

Timer QtMainLoop::after(std::chrono::nanoseconds delay, Task task) {
    Timer timer = timers_.add(steadyNow() + delay, std::move(task));
    armTimer();
    return timer;
}

void QtMainLoop::onSignals(std::initializer_list<int> signals, std::function<void(int)> handler) {
    signalHandler_ = std::move(handler);
    Pipe pipe = makePipe();
    signalRead_ = std::move(pipe.readEnd);
    signalWrite_ = std::move(pipe.writeEnd);
    makeNonBlocking(signalRead_);
    makeNonBlocking(signalWrite_);
    signalNotifier_ = std::make_unique<QSocketNotifier>(signalRead_.get(), QSocketNotifier::Read);
    QObject::connect(signalNotifier_.get(), &QSocketNotifier::activated, receiver_.get(),
                     [this] { runSignalled(); });
    signals_ = signals;
    noteSignals(signals, signalWrite_.get());
}

void QtMainLoop::forgetSignals() {
    for (const int signal : std::exchange(signals_, {})) std::signal(signal, SIG_DFL);
}

void QtMainLoop::run() {
    QCoreApplication::exec();
}

void QtMainLoop::stop() {
    post([] { QCoreApplication::exit(); });
}

void QtMainLoop::dropPosted() {
    while (true) {
        std::deque<Task> dropped = std::exchange(turn_, {});
        {
            const std::lock_guard lock(mutex_);
            std::ranges::move(posted_, std::back_inserter(dropped));
            posted_.clear();
        }
        if (dropped.empty()) return;
        dropped.clear();  // what they held may post something as it goes
    }
}

void QtMainLoop::runPosted() {
    {
        const std::lock_guard lock(mutex_);
        turnIsDue_ = false;
        runsPosted_ = true;
        // Where a task runs a loop of its own, what it left of its turn comes first.
        std::ranges::move(posted_, std::back_inserter(turn_));
        posted_.clear();
    }
    while (!turn_.empty()) {
        const Task task = std::move(turn_.front());
        turn_.pop_front();
        task();
    }
    const std::lock_guard lock(mutex_);
    runsPosted_ = false;
}

void QtMainLoop::runDueTimers() {
    timers_.runDue(steadyNow());
    armTimer();
}

void QtMainLoop::armTimer() {
    const auto due = timers_.nextDue();
    if (!due) return receiver_->sleep();
    constexpr auto longest = std::chrono::hours(24);
    const auto remaining = std::clamp<SteadyTime::duration>(*due - steadyNow(), {}, longest);
    receiver_->wakeAfter(std::chrono::ceil<std::chrono::milliseconds>(remaining));
}

void QtMainLoop::runSignalled() {
    std::array<char, 64> bytes{};
    while (read(signalRead_.get(), bytes.data(), bytes.size()) == std::ssize(bytes)) {
    }
    for (const int signal : takeArrivedSignals()) signalHandler_(signal);
}

}  // namespace tarnbeck
