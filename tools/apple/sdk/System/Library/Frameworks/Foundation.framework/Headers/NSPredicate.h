#pragma once

#import <Foundation/NSObject.h>

@interface NSPredicate : NSObject <NSCopying>
@end
