#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

@interface PDFDocument : NSObject <NSCopying>
- (nullable instancetype)initWithURL:(NSURL*)url;
@property(nonatomic, readonly) NSUInteger pageCount;
@end

NS_ASSUME_NONNULL_END
