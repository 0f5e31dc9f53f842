// links: expects: undefined symbol: _?OBJC_CLASS_\$_NSApplescript
// The compiler takes any class that is declared; the list of symbols does not have this one.
#import <Foundation/Foundation.h>

@interface NSApplescript : NSObject
@end

int main() { return [[NSApplescript alloc] init] == nil; }
