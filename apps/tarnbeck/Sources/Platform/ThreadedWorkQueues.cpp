#include "ThreadedWorkQueues.h"

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "ThreadPriority.h"

namespace tarnbeck {
namespace {

constexpr const char* userInitiatedName = "tarnbeck-user";
constexpr const char* utilityName = "tarnbeck-util";

}  // namespace

// The tasks of both classes that are queued or run: they post each other, so that one class alone
// can't tell whether it stays idle.
class ThreadedWorkQueues::Outstanding {
  public:
    void begin() { ++tasks_; }
    void end() {
        if (--tasks_ != 0) return;
        const std::lock_guard lock(mutex_);
        none_.notify_all();
    }
    void waitUntilNone() {
        std::unique_lock lock(mutex_);
        none_.wait(lock, [this] { return tasks_ == 0; });
    }
    bool waitUntilNone(std::chrono::nanoseconds atMost) {
        std::unique_lock lock(mutex_);
        return none_.wait_for(lock, atMost, [this] { return tasks_ == 0; });
    }

  private:
    std::atomic<std::uint64_t> tasks_{0};
    std::mutex mutex_;
    std::condition_variable none_;
};

class ThreadedWorkQueues::Pool {
  public:
    Pool(WorkClass workClass, const char* name, std::shared_ptr<Outstanding> outstanding)
        : workClass_(workClass), name_(name), outstanding_(std::move(outstanding)) {}
    Pool(const Pool&) = delete;
    Pool& operator=(const Pool&) = delete;
    ~Pool() { finish(); }

    void post(Task task) {
        outstanding_->begin();
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        if (tasks_.size() > idleThreads_ && !finishing_) {
            addThread();
        } else {
            wake_.notify_one();
        }
    }

    void finish() {
        std::vector<std::thread> threads;
        {
            const std::lock_guard lock(mutex_);
            finishing_ = true;
            threads.swap(threads_);
        }
        wake_.notify_all();
        for (std::thread& thread : threads) thread.join();
    }

  private:
    // Where the system has no thread left, the task waits for one of those that there are.
    void addThread() {
        try {
            threads_.emplace_back([this] { work(); });
        } catch (const std::system_error&) {
            if (threads_.empty()) throw;
        }
    }

    void work() {
        nameThread(name_);
        applyWorkClass(workClass_);
        std::unique_lock lock(mutex_);
        ++idleThreads_;
        while (true) {
            wake_.wait(lock, [this] { return finishing_ || !tasks_.empty(); });
            --idleThreads_;
            if (tasks_.empty()) return;
            Task task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            task();
            task = nullptr;  // what it held goes before the thread waits again
            lock.lock();
            ++idleThreads_;  // whoever waits for the end of the work finds this thread free
            outstanding_->end();
        }
    }

    const WorkClass workClass_;
    const char* const name_;
    const std::shared_ptr<Outstanding> outstanding_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<Task> tasks_;
    std::vector<std::thread> threads_;
    std::size_t idleThreads_ = 0;
    bool finishing_ = false;
};

// A serial queue borrows a thread of the pool while it has tasks.
class ThreadedWorkQueues::Strand : public SerialQueue, public std::enable_shared_from_this<Strand> {
  public:
    Strand(std::shared_ptr<Pool> pool, std::string label)
        : pool_(std::move(pool)), label_(std::move(label)) {}

    void post(Task task) override {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        ++posted_;
        if (running_) return;
        running_ = true;
        pool_->post([self = shared_from_this()] { self->runAll(); });
    }

    void drain() override {
        std::unique_lock lock(mutex_);
        // Whoever goes on posting meanwhile does not keep the waiting one.
        finished_.wait(lock, [this, last = posted_] { return finishedTasks_ >= last; });
    }

  private:
    void runAll() {
        nameThread(label_.c_str());
        std::unique_lock lock(mutex_);
        while (!tasks_.empty()) {
            Task task = std::move(tasks_.front());
            tasks_.pop_front();
            lock.unlock();
            task();
            task = nullptr;
            lock.lock();
            ++finishedTasks_;
            finished_.notify_all();
        }
        nameThread(utilityName);
        running_ = false;
    }

    const std::shared_ptr<Pool> pool_;
    const std::string label_;
    std::mutex mutex_;
    std::condition_variable finished_;
    std::deque<Task> tasks_;
    std::uint64_t posted_ = 0;
    std::uint64_t finishedTasks_ = 0;
    bool running_ = false;
};

ThreadedWorkQueues::ThreadedWorkQueues()
    : outstanding_(std::make_shared<Outstanding>()),
      userInitiated_(
          std::make_shared<Pool>(WorkClass::userInitiated, userInitiatedName, outstanding_)),
      utility_(std::make_shared<Pool>(WorkClass::utility, utilityName, outstanding_)) {}

ThreadedWorkQueues::~ThreadedWorkQueues() {
    waitUntilIdle();
    userInitiated_->finish();
    utility_->finish();
}

void ThreadedWorkQueues::waitUntilIdle() {
    outstanding_->waitUntilNone();
}

bool ThreadedWorkQueues::waitUntilIdle(std::chrono::nanoseconds atMost) {
    return outstanding_->waitUntilNone(atMost);
}

void ThreadedWorkQueues::userInitiated(Task task) {
    userInitiated_->post(std::move(task));
}

void ThreadedWorkQueues::utility(Task task) {
    utility_->post(std::move(task));
}

std::shared_ptr<SerialQueue> ThreadedWorkQueues::serial(std::string label) {
    return std::make_shared<Strand>(utility_, std::move(label));
}

}  // namespace tarnbeck
