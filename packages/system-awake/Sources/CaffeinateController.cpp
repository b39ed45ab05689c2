#include "CaffeinateController.h"

#include <utility>

namespace system_awake {
namespace {

std::vector<std::string> flags(const std::vector<CaffeinateAssertion>& assertions) {
    std::vector<std::string> result;
    result.reserve(assertions.size());
    for (const CaffeinateAssertion assertion : assertions) result.emplace_back(flag(assertion));
    return result;
}

}  // namespace

CaffeinateController::CaffeinateController(CaffeinateLaunching& launcher,
                                           std::optional<std::int32_t> boundProcessID,
                                           Environment environment)
    : launcher_(launcher),
      boundProcessID_(boundProcessID),
      environment_(std::move(environment)),
      anchor_(std::make_shared<CaffeinateController*>(this)) {}

CaffeinateController::~CaffeinateController() = default;

bool CaffeinateController::isActive() const {
    if (process_ && !process_->isRunning()) return false;
    return state_.isActive();
}

void CaffeinateController::start(const std::vector<CaffeinateAssertion>& assertions) {
    if (process_ && process_->isRunning()) {
        const auto* active = std::get_if<CaffeinateState::Active>(&state_.value);
        if (active && active->assertions == assertions) return setState(state_);
        stop();
    }
    // One that has ended without having told so yet: what it tells later concerns nobody.
    process_.reset();
    auto launched = launcher_.start(flags(assertions), boundProcessID_);
    if (const auto* failure = std::get_if<LaunchFailure>(&launched)) {
        return setState({CaffeinateState::Failed{failure->message}});
    }
    process_ = std::get<std::unique_ptr<CaffeinateProcess>>(std::move(launched));
    process_->setTerminationHandler(terminationHandlerOf(process_->id()));
    setState({CaffeinateState::Active{environment_.now(), assertions}});
}

void CaffeinateController::stop() {
    if (process_) process_->terminate();
    process_.reset();
    setState({CaffeinateState::Inactive{}});
}

void CaffeinateController::toggle(const std::vector<CaffeinateAssertion>& assertions) {
    if (isActive()) {
        stop();
    } else {
        start(assertions);
    }
}

std::shared_ptr<void> CaffeinateController::observe(std::function<void()> observer) {
    auto token = std::make_shared<Observer>(std::move(observer));
    observers_.push_back(token);
    return token;
}

// An observer may add and remove observers, or write the state again.
void CaffeinateController::setState(CaffeinateState state) {
    state_ = std::move(state);
    std::erase_if(observers_, [](const auto& observer) { return observer.expired(); });
    const auto present = observers_;
    for (const auto& observer : present) {
        if (const auto held = observer.lock()) (*held)();
    }
}

// Touches nothing of the controller but through the main thread.
std::function<void()> CaffeinateController::terminationHandlerOf(const std::string& processID) {
    const std::weak_ptr<CaffeinateController*> anchor = anchor_;
    return [anchor, processID, post = environment_.postToMainThread] {
        post([anchor, processID] {
            if (const auto controller = anchor.lock()) {
                (*controller)->processDidTerminate(processID);
            }
        });
    };
}

// An earlier child may tell of its end when a newer one runs already.
void CaffeinateController::processDidTerminate(const std::string& processID) {
    if (!process_ || process_->id() != processID) return;
    process_.reset();
    setState({CaffeinateState::Inactive{}});
}

}  // namespace system_awake
