// expects nothing
// What the others are measured by: an adapter in small.
#import <Foundation/Foundation.h>

int main() {
    @autoreleasepool {
        NSArray<NSString*>* names = @[ @"one", @"two" ];
        return [names containsObject:@"one"] ? 0 : 1;
    }
}
