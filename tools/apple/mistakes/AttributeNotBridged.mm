// expects: requires a bridged cast
// Whether the text is to be released is not said.
#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

NSString* titleOf(AXUIElementRef element) {
    CFTypeRef title = nullptr;
    AXUIElementCopyAttributeValue(element, CFSTR("AXTitle"), &title);
    return (NSString*)title;
}
