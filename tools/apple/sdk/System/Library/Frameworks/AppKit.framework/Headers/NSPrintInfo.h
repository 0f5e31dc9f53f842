#pragma once

#import <AppKit/AppKitDefines.h>

NS_ASSUME_NONNULL_BEGIN

typedef NS_ENUM(NSInteger, NSPaperOrientation) {
    NSPaperOrientationPortrait = 0,
    NSPaperOrientationLandscape = 1,
};

typedef NS_ENUM(NSUInteger, NSPrintingPaginationMode) {
    NSPrintingPaginationModeAutomatic = 0,
    NSPrintingPaginationModeFit = 1,
};

typedef NSString* NSPrintInfoAttributeKey NS_TYPED_EXTENSIBLE_ENUM;
APPKIT_EXTERN const NSPrintInfoAttributeKey NSPrintPaperSize;
APPKIT_EXTERN const NSPrintInfoAttributeKey NSPrintOrientation;
APPKIT_EXTERN const NSPrintInfoAttributeKey NSPrintJobSavingURL;
APPKIT_EXTERN const NSPrintInfoAttributeKey NSPrintHeaderAndFooter;

typedef NSString* NSPrintJobDispositionValue NS_TYPED_EXTENSIBLE_ENUM;
APPKIT_EXTERN const NSPrintJobDispositionValue NSPrintSaveJob;

@interface NSPrintInfo : NSObject <NSCopying>
- (instancetype)initWithDictionary:(NSDictionary<NSPrintInfoAttributeKey, id>*)attributes NS_DESIGNATED_INITIALIZER;
- (instancetype)init;
- (NSMutableDictionary<NSPrintInfoAttributeKey, id>*)dictionary;
@property CGFloat leftMargin;
@property CGFloat rightMargin;
@property CGFloat topMargin;
@property CGFloat bottomMargin;
@property(getter=isHorizontallyCentered) BOOL horizontallyCentered;
@property(getter=isVerticallyCentered) BOOL verticallyCentered;
@property NSPrintingPaginationMode horizontalPagination;
@property NSPrintingPaginationMode verticalPagination;
@property(copy) NSPrintJobDispositionValue jobDisposition;
@end

NS_ASSUME_NONNULL_END
