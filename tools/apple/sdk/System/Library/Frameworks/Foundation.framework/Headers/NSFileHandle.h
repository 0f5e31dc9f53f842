#pragma once

#import <Foundation/NSData.h>
#import <Foundation/NSError.h>
#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSFileHandle : NSObject
- (nullable NSData*)readDataToEndOfFileAndReturnError:(NSError**)error;
@end

@interface NSPipe : NSObject
@property(readonly, retain) NSFileHandle* fileHandleForReading;
@property(readonly, retain) NSFileHandle* fileHandleForWriting;
+ (NSPipe*)pipe;
@end

NS_ASSUME_NONNULL_END
