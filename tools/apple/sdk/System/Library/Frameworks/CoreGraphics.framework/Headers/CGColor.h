#pragma once

#include <CoreGraphics/CGBase.h>

CF_ASSUME_NONNULL_BEGIN

typedef struct CF_BRIDGED_TYPE(id) CGColor* CGColorRef;

CG_EXTERN CGColorRef CGColorCreateGenericGray(CGFloat gray, CGFloat alpha);

CF_ASSUME_NONNULL_END
