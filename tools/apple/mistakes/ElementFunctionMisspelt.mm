// links: expects: undefined symbol: _?AXUIElementCopyAttributesValue
// The compiler takes any function that is declared; the list of symbols does not have this one.
#import <ApplicationServices/ApplicationServices.h>

extern "C" AXError AXUIElementCopyAttributesValue(AXUIElementRef element, CFStringRef attribute, CFTypeRef* value);

int main() {
    CFTypeRef role = nullptr;
    return AXUIElementCopyAttributesValue(AXUIElementCreateApplication(1), CFSTR("AXRole"), &role);
}
