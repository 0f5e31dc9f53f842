#include "VeskShellCore/PDFDocument.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

constexpr auto letter = CapabilityPDFPaperSize::letter, a4 = CapabilityPDFPaperSize::a4;

TEST(PDFDocument, PaperInPoints) {
    EXPECT_EQ(pageSize(letter, false), (PDFPageSize{612, 792}));
    EXPECT_EQ(pageSize(letter, true), (PDFPageSize{792, 612}));
    EXPECT_EQ(pageSize(a4, false), (PDFPageSize{595, 842}));
    EXPECT_EQ(pageSize(a4, true), (PDFPageSize{842, 595}));
}

TEST(PDFDocument, PaperInCss) {
    EXPECT_EQ(pageCSSRule(letter, false), "@page { size: Letter portrait; margin: 0; }");
    EXPECT_EQ(pageCSSRule(letter, true), "@page { size: Letter landscape; margin: 0; }");
    EXPECT_EQ(pageCSSRule(a4, false), "@page { size: A4 portrait; margin: 0; }");
    EXPECT_EQ(pageCSSRule(a4, true), "@page { size: A4 landscape; margin: 0; }");
}

TEST(PDFDocument, RootBodyOrDoctypeMakeAFullDocument) {
    for (const char* html : {"<html>", "<HTML lang=x>", "x<BODY>", "<!DOCTYPE html>", "<!doctype", "<p><body"})
        EXPECT_TRUE(looksLikeFullHTMLDocument(html)) << html;
    for (const char* html : {"", "<p>html</p>", "< html>", "<htm", "<bod y", "body", "&lt;body"})
        EXPECT_FALSE(looksLikeFullHTMLDocument(html)) << html;
}

TEST(PDFDocument, AFullDocumentStaysAsItIs) {
    EXPECT_EQ(normalizedHTMLDocument("<BODY>hi</BODY>", "T", a4, true), "<BODY>hi</BODY>");
}

TEST(PDFDocument, APieceGetsADocumentAroundIt) {
    EXPECT_EQ(normalizedHTMLDocument("<p>Fish & chips</p>", " A & \"B\" <c> \n", a4, true),
              "<!DOCTYPE html>\n<html lang=\"en\">\n  <head>\n    <meta charset=\"utf-8\" />\n"
              "    <meta name=\"viewport\" content=\"width=device-width, initial-scale=1\" />\n"
              "    <title>A &amp; &quot;B&quot; &lt;c&gt;</title>\n    <style>\n"
              "      @page { size: A4 landscape; margin: 0; }\n"
              "      html, body {\n        margin: 0;\n        padding: 0;\n      }\n"
              "      * {\n        -webkit-print-color-adjust: exact;\n        print-color-adjust: exact;\n"
              "        box-sizing: border-box;\n      }\n    </style>\n  </head>\n  <body>\n"
              "<p>Fish & chips</p>\n  </body>\n</html>");
}

TEST(PDFDocument, ATitleThatSaysAmpIsEscapedOnce) {
    EXPECT_NE(normalizedHTMLDocument("x", "&amp;", letter, false).find("<title>&amp;amp;</title>"), std::string::npos);
}

TEST(PDFDocument, WithoutATitleItIsCalledVeskPdf) {
    for (const std::optional<std::string>& title : {std::optional<std::string>(), std::optional<std::string>(" \n")})
        EXPECT_NE(normalizedHTMLDocument("x", title, letter, false).find("<title>Vesk PDF</title>"), std::string::npos);
}

} // namespace
} // namespace vesk
