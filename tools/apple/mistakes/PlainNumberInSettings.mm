// expects: numeric literal must be prefixed by .@. in a collection
// Settings hold objects; a plain number is none.
#import <AVFoundation/AVFoundation.h>

NSDictionary<NSString*, id>* frameSettings() { return @{AVVideoWidthKey : 1080}; }
