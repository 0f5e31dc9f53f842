#pragma once

#import <AppKit/NSRunningApplication.h>
#import <AppKit/NSWorkspace.h>
#import <Foundation/Foundation.h>
