// expects: messaging unqualified id
// A value of a dictionary may be of any class; asking it at once for its text ends the program where it is another.
#import <Foundation/Foundation.h>

NSUInteger lengthOf(NSDictionary<NSString*, id>* information) { return [information[@"name"] length]; }
