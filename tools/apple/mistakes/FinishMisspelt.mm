// expects: no visible @interface for 'AVAssetWriter' declares the selector 'finishWritingWithCompletion:'
#import <AVFoundation/AVFoundation.h>

void finish(AVAssetWriter* writer, void (^answer)(void)) { [writer finishWritingWithCompletion:answer]; }
