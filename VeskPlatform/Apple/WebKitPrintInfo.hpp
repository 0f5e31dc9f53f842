#pragma once

#include "VeskPlatform/WebView.hpp"

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// How the print system makes a file of a job: without margins, header and footer, as wide as the page, and over as
/// many pages as it takes. Throws ErrorRecord for a path that is no UTF-8.
NSPrintInfo* printInfo(const WebPrintJob& job);

} // namespace vesk

NS_ASSUME_NONNULL_END
