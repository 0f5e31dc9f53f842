#include "VeskPlatform/Apple/WebKitPrintInfo.hpp"

#include "VeskPlatform/Apple/FoundationValues.hpp"

namespace vesk {

namespace {

constexpr auto fitToPage = static_cast<NSPrintingPaginationMode>(1);
constexpr auto automatic = static_cast<NSPrintingPaginationMode>(0);
static_assert(fitToPage == NSPrintingPaginationModeFit && automatic == NSPrintingPaginationModeAutomatic);
static_assert(NSPaperOrientationPortrait == 0 && NSPaperOrientationLandscape == 1);

NSDictionary<NSPrintInfoAttributeKey, id>* paper(const WebPrintJob& job) {
    const NSInteger orientation = job.landscape ? NSPaperOrientationLandscape : NSPaperOrientationPortrait;
    return @{
        NSPrintPaperSize : [NSValue valueWithSize:NSMakeSize(job.paperWidth, job.paperHeight)],
        NSPrintOrientation : @(orientation)
    };
}

} // namespace

NSPrintInfo* printInfo(const WebPrintJob& job) {
    NSPrintInfo* info = [[NSPrintInfo alloc] initWithDictionary:paper(job)];
    info.leftMargin = 0;
    info.rightMargin = 0;
    info.topMargin = 0;
    info.bottomMargin = 0;
    info.horizontallyCentered = NO;
    info.verticallyCentered = NO;
    info.horizontalPagination = fitToPage;
    info.verticalPagination = automatic;
    info.jobDisposition = NSPrintSaveJob;
    info.dictionary[NSPrintJobSavingURL] = fileUrl(job.outputPath);
    info.dictionary[NSPrintHeaderAndFooter] = @NO;
    return info;
}

} // namespace vesk
