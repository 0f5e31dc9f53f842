// blocks: expects: a block captures the reference 'take'
// The handler is called when the caller's function object is gone: of a reference, a block keeps the reference.
#import <AVFoundation/AVFoundation.h>

#include <functional>

void requestMicrophone(const std::function<void(bool)>& take) {
    [AVCaptureDevice requestAccessForMediaType:AVMediaTypeAudio
                             completionHandler:^(BOOL granted) {
                               take(granted);
                             }];
}
