// expects: block implicitly retains 'self'
// A block that reaches for a member keeps the whole object, which nobody sees in it.
#import <Foundation/Foundation.h>

@interface Count : NSObject
@end

@implementation Count {
    int _ended;
}
- (void)start:(void (^_Nonnull)(void (^_Nonnull end)(void)))run {
    run(^{
      ++_ended;
    });
}
@end
