#import "VeskPlatform/Apple/DispatchSerialQueue.hpp"

namespace vesk {

DispatchSerialQueue::DispatchSerialQueue(const char* label)
    : queue_(dispatch_queue_create(label, DISPATCH_QUEUE_SERIAL)) {}

DispatchSerialQueue::~DispatchSerialQueue() { drain(); }

void DispatchSerialQueue::async(std::function<void()> block) {
    dispatch_async(queue_, ^{
      @autoreleasepool {
          block();
      }
    });
}

void DispatchSerialQueue::drain() {
    dispatch_sync(queue_, ^{
                  });
}

} // namespace vesk
