// expects: implicit conversion from nullable pointer 'AVAssetTrack
// A clip need not have any sound.
#import <AVFoundation/AVFoundation.h>

BOOL insertSound(AVMutableCompositionTrack* timeline, NSArray<AVAssetTrack*>* sounds, CMTimeRange range) {
    return [timeline insertTimeRange:range ofTrack:sounds.firstObject atTime:kCMTimeZero error:nil];
}
