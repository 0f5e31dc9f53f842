#pragma once

#import <PDFKit/PDFDocument.h>
