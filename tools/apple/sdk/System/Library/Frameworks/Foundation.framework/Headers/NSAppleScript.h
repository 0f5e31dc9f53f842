#pragma once

#import <Foundation/NSDictionary.h>
#import <Foundation/NSObject.h>
#import <Foundation/NSString.h>

@class NSAppleEventDescriptor;

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT NSString* const NSAppleScriptErrorMessage;

@interface NSAppleScript : NSObject
- (nullable instancetype)initWithSource:(NSString*)source;
- (NSAppleEventDescriptor*)executeAndReturnError:(NSDictionary<NSString*, id>* _Nullable* _Nullable)errorInfo;
@end

NS_ASSUME_NONNULL_END
