#pragma once

#import <Foundation/Foundation.h>

@interface EKObject : NSObject
@end
