#pragma once

#import <Foundation/NSData.h>
#import <Foundation/NSError.h>
#import <Foundation/NSObject.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSFileHandle : NSObject
+ (nullable instancetype)fileHandleForReadingFromURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)error;
+ (nullable instancetype)fileHandleForWritingToURL:(NSURL*)url error:(NSError* _Nullable* _Nullable)error;
- (instancetype)initWithFileDescriptor:(int)descriptor closeOnDealloc:(BOOL)closes;
@property(readonly) int fileDescriptor;
- (nullable NSData*)readDataToEndOfFileAndReturnError:(NSError* _Nullable* _Nullable)error;
- (nullable NSData*)readDataUpToLength:(NSUInteger)length error:(NSError* _Nullable* _Nullable)error;
- (BOOL)writeData:(NSData*)data error:(NSError* _Nullable* _Nullable)error;
- (BOOL)seekToEndReturningOffset:(nullable unsigned long long*)offset error:(NSError* _Nullable* _Nullable)error;
- (BOOL)truncateAtOffset:(unsigned long long)offset error:(NSError* _Nullable* _Nullable)error;
- (BOOL)synchronizeAndReturnError:(NSError* _Nullable* _Nullable)error;
- (BOOL)closeAndReturnError:(NSError* _Nullable* _Nullable)error;
@end

@interface NSPipe : NSObject
@property(readonly, retain) NSFileHandle* fileHandleForReading;
@property(readonly, retain) NSFileHandle* fileHandleForWriting;
+ (NSPipe*)pipe;
@end

NS_ASSUME_NONNULL_END
