#pragma once

#import <Foundation/Foundation.h>

#define APPKIT_EXTERN FOUNDATION_EXPORT
