#pragma once

#include <CoreGraphics/CGBase.h>
#include <CoreGraphics/CGColor.h>
#include <CoreGraphics/CGImage.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) CGContext* CGContextRef;

typedef CF_ENUM(int32_t, CGBlendMode) {
    kCGBlendModeNormal = 0,
    kCGBlendModeCopy = 17,
};

CG_EXTERN void CGContextSaveGState(CGContextRef _Nullable context);
CG_EXTERN void CGContextRestoreGState(CGContextRef _Nullable context);
CG_EXTERN void CGContextScaleCTM(CGContextRef _Nullable context, CGFloat x, CGFloat y);
CG_EXTERN void CGContextTranslateCTM(CGContextRef _Nullable context, CGFloat x, CGFloat y);
CG_EXTERN void CGContextSetBlendMode(CGContextRef _Nullable context, CGBlendMode mode);
CG_EXTERN void CGContextSetFillColorWithColor(CGContextRef _Nullable context, CGColorRef _Nullable color);
CG_EXTERN void CGContextFillRect(CGContextRef _Nullable context, CGRect rectangle);
CG_EXTERN void CGContextDrawImage(CGContextRef _Nullable context, CGRect rectangle, CGImageRef _Nullable image);

CF_ASSUME_NONNULL_END
