#include <type_traits>
#include <utility>

#include <CoreFoundation/CoreFoundation.h>

#include "NamedSignals.h"

namespace single_instance {
namespace {

struct Release {
    void operator()(CFTypeRef object) const { CFRelease(object); }
};
using OwnedString = std::unique_ptr<std::remove_pointer_t<CFStringRef>, Release>;

OwnedString systemString(const std::string& text) {
    return OwnedString(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

// Its address is the observer's identity.
class Observer {
  public:
    Observer(OwnedString name, std::function<void()> handler)
        : name_(std::move(name)), handler_(std::move(handler)) {
        CFNotificationCenterAddObserver(CFNotificationCenterGetDarwinNotifyCenter(), this, deliver,
                                        name_.get(), nullptr,
                                        CFNotificationSuspensionBehaviorDeliverImmediately);
    }
    Observer(const Observer&) = delete;
    Observer& operator=(const Observer&) = delete;
    ~Observer() {
        CFNotificationCenterRemoveObserver(CFNotificationCenterGetDarwinNotifyCenter(), this,
                                           name_.get(), nullptr);
    }

  private:
    static void deliver(CFNotificationCenterRef /*center*/, void* observer,
                        CFNotificationName /*name*/, const void* /*object*/,
                        CFDictionaryRef /*userInfo*/) {
        static_cast<const Observer*>(observer)->handler_();
    }

    OwnedString name_;
    std::function<void()> handler_;
};

class DarwinSignals : public NamedSignals {
  public:
    void post(const std::string& name) override {
        if (const OwnedString text = systemString(name)) {
            CFNotificationCenterPostNotification(CFNotificationCenterGetDarwinNotifyCenter(),
                                                 text.get(), nullptr, nullptr, true);
        }
    }

    std::shared_ptr<void> observe(const std::string& name, std::function<void()> handler) override {
        OwnedString text = systemString(name);
        if (!text) return nullptr;
        return std::make_shared<Observer>(std::move(text), std::move(handler));
    }
};

}  // namespace

std::unique_ptr<NamedSignals> makeSystemNamedSignals() {
    return std::make_unique<DarwinSignals>();
}

}  // namespace single_instance
