#pragma once

#import <UniformTypeIdentifiers/UTType.h>

NS_ASSUME_NONNULL_BEGIN

FOUNDATION_EXPORT UTType* const UTTypePNG API_AVAILABLE(macos(11.0));

NS_ASSUME_NONNULL_END
