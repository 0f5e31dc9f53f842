// expects: no viable conversion from 'double' to 'CMTime'
// A time of a film is a fraction with its own timescale, and no number of seconds.
#import <AVFoundation/AVFoundation.h>

void begin(AVAssetWriter* writer) { [writer startSessionAtSourceTime:0.0]; }
