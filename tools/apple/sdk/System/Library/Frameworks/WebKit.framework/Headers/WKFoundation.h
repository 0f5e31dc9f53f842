#pragma once

#import <AppKit/AppKit.h>
#import <Foundation/Foundation.h>

#define WK_EXTERN FOUNDATION_EXPORT
