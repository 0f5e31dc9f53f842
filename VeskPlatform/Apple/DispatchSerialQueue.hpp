#pragma once

#import <Foundation/Foundation.h>

#include "VeskPlatform/SerialQueue.hpp"

namespace vesk {

/// A serial queue of the dispatch library, under the label that debuggers show.
class DispatchSerialQueue : public SerialQueue {
public:
    explicit DispatchSerialQueue(const char* _Nonnull label);
    /// Runs what is still queued.
    ~DispatchSerialQueue() override;

    void async(std::function<void()> block) override;
    void drain() override;

private:
    dispatch_queue_t _Nonnull queue_;
};

} // namespace vesk
