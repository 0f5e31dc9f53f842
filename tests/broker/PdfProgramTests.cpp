// The built broker renders HTML; what comes out is read by poppler's programs.

#include "VeskSupport/Json.hpp"
#include "tests/support/ProgramRun.hpp"

#include <array>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <netinet/in.h>
#include <sstream>
#include <sys/socket.h>
#include <unistd.h>

namespace vesk::test {
namespace {

using testing::HasSubstr;
using testing::Not;

/// Counts who connects to a port of this machine.
class Listener {
public:
    Listener() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 || ::listen(socket_, 16) != 0)
            throw std::runtime_error("no port to listen on");
        socklen_t length = sizeof address;
        ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length);
        port_ = ntohs(address.sin_port);
    }
    ~Listener() { ::close(socket_); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    std::string origin() const { return "http://127.0.0.1:" + std::to_string(port_); }
    bool wasReached() const {
        const int connection = ::accept(socket_, nullptr, nullptr);
        if (connection >= 0) ::close(connection);
        return connection >= 0;
    }

private:
    int socket_;
    int port_ = 0;
};

struct Colour {
    int red = 0, green = 0, blue = 0;
    bool operator==(const Colour&) const = default;
};

std::ostream& operator<<(std::ostream& stream, const Colour& colour) {
    return stream << colour.red << "," << colour.green << "," << colour.blue;
}

/// A page as a picture.
struct Picture {
    int width = 0, height = 0;
    std::string bytes;
    Colour at(int x, int y) const {
        const auto value = [&](int channel) {
            return static_cast<int>(
                static_cast<unsigned char>(bytes.at(static_cast<std::size_t>((y * width + x) * 3 + channel))));
        };
        return {value(0), value(1), value(2)};
    }
};

constexpr Colour white{255, 255, 255}, red{255, 0, 0}, lime{0, 255, 0};

class PdfProgram : public testing::Test {
protected:
    ProgramRun program{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};
    std::filesystem::path folder = program.folder();

    PdfProgram() {
        program.environment["VESK_APP_SUPPORT_DIR"] = (folder / "support").string();
        program.environment["TMPDIR"] = (folder / "temporary").string();
        // The engine runs as another user where the tests run as root.
        std::filesystem::create_directory(folder / "temporary");
        for (const auto& open : {folder, folder / "temporary"})
            std::filesystem::permissions(open, std::filesystem::perms(0755));
        program.deadline = std::chrono::seconds(50);
    }

    ProgramResult render(const std::string& html, const std::string& rest = "") {
        const JsonValue request{JsonValue::Object{{"html", {html}}, {"outputPath", {(folder / "out/a.pdf").string()}}}};
        std::string text = writeJson(request);
        if (!rest.empty()) text.insert(text.rfind('}'), "," + rest);
        std::ofstream(folder / "request.json") << text;
        return program.run({"pdf-render-html", "--request", (folder / "request.json").string()});
    }
    void renderWell(const std::string& html, const std::string& rest = "") {
        const ProgramResult result = render(html, rest);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        answer = result.output;
        EXPECT_TRUE(std::filesystem::is_empty(folder / "temporary"));
    }
    static std::string read(const std::string& path, std::vector<std::string> arguments, const std::string& document) {
        arguments.push_back(document);
        arguments.emplace_back("-");
        ProgramRun reader(path);
        const ProgramResult result = reader.run(arguments);
        EXPECT_EQ(result.status, 0) << result << "\nThe test needs the package poppler-utils.";
        return result.output;
    }
    std::string text() const { return read("/usr/bin/pdftotext", {"-layout"}, (folder / "out/a.pdf").string()); }
    /// A tenth of an inch is a pixel.
    Picture picture(int page = 1) const {
        ProgramRun reader("/usr/bin/pdftoppm");
        const std::string number = std::to_string(page);
        const ProgramResult result = reader.run({"-r", "10", "-f", number, "-l", number, "-singlefile",
                                                 (folder / "out/a.pdf").string(), (folder / "page").string()});
        EXPECT_EQ(result.status, 0) << result;
        std::ifstream file(folder / "page.ppm", std::ios::binary);
        std::string format;
        int depth = 0;
        Picture picture;
        file >> format >> picture.width >> picture.height >> depth;
        file.get();
        picture.bytes.assign(std::istreambuf_iterator<char>(file), {});
        return picture;
    }
    /// "PAGES: WIDTH x HEIGHT" of the first page, in points.
    std::string paper() const {
        ProgramRun reader("/usr/bin/pdfinfo");
        std::istringstream lines(reader.run({(folder / "out/a.pdf").string()}).output);
        std::string pages, size;
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("Pages:")) pages = line.substr(line.find_last_of(' ') + 1);
            if (line.starts_with("Page size:")) size = line.substr(17, line.find(" pts") - 17);
        }
        return pages + ": " + size;
    }
    std::string log() const {
        std::ifstream file(folder / "support/logs/shell-debug.log");
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string answer;
};

TEST_F(PdfProgram, AnswersWithWhatItWrote) {
    renderWell("<p>Gr\xC3\xBC\xC3\x9F"
               "e</p>",
               R"("title":" A & <b> ")");
    EXPECT_THAT(answer, HasSubstr(R"("fileName" : "a.pdf")"));
    EXPECT_THAT(answer, HasSubstr(R"("mimeType" : "application\/pdf")"));
    EXPECT_THAT(answer, HasSubstr(R"("pageCount" : 1)"));
    EXPECT_THAT(text(), HasSubstr("Gr\xC3\xBC\xC3\x9F"
                                  "e"));
    ProgramRun reader("/usr/bin/pdfinfo");
    EXPECT_THAT(reader.run({(folder / "out/a.pdf").string()}).output, HasSubstr("Title:           A & <b>\n"));
}

TEST_F(PdfProgram, PaperIsAsRequestedWhateverTheDocumentAsksFor) {
    const std::string full =
        "<html><head><style>@page { size: A5 landscape; margin: 3cm; @top-left { content: 'HEADER' } }"
        "html, body { margin: 0; background: lime }</style></head><body>x</body></html>";
    for (const auto& [rest, size] : {std::pair{R"("paperSize":"letter")", "1: 612 x 792"},
                                     std::pair{R"("paperSize":"letter","landscape":true)", "1: 792 x 612"},
                                     std::pair{R"("paperSize":"a4")", "1: 594.96 x 841.92"},
                                     std::pair{R"("paperSize":"a4","landscape":true)", "1: 841.92 x 594.96"}}) {
        renderWell(full, rest);
        EXPECT_EQ(paper(), size);
        const Picture page = picture();
        EXPECT_EQ(page.at(1, 1), lime);
        EXPECT_EQ(page.at(page.width - 2, page.height - 2), lime);
        EXPECT_THAT(text(), Not(HasSubstr("HEADER")));
    }
}

TEST_F(PdfProgram, ContentThatIsTooWideIsMadeSmaller) {
    renderWell("<div style='width:1600px; height:160px; background:lime'></div>"
               "<div style='width:100px; height:160px; background:red'></div>");
    const Picture page = picture(); // 85 x 110
    EXPECT_EQ(page.at(1, 1), lime);
    EXPECT_EQ(page.at(page.width - 2, 1), lime);
    EXPECT_EQ(page.at(2, 11), red); // 160 of 1,600 pixels are a tenth of the width
    EXPECT_EQ(page.at(page.width - 2, 11), white);
    EXPECT_EQ(paper(), "1: 612 x 792");
}

TEST_F(PdfProgram, PagesAreAsManyAsTheContentNeeds) {
    renderWell("<div style='height:10in; background:red'></div><div style='height:10in'>second</div>"
               "<div style='height:10in'></div>");
    EXPECT_THAT(answer, HasSubstr("Rendered HTML into a 3-page PDF."));
    EXPECT_EQ(paper(), "3: 612 x 792");
}

TEST_F(PdfProgram, ThePageHasNoNetworkNoFilesAndNoScripts) {
    const Listener listener;
    std::ofstream(folder / "secret.txt") << "PLANTED";
    const std::string file = "file://" + (folder / "secret.txt").string(), there = listener.origin();
    renderWell("<html><head><meta http-equiv=refresh content='0;url=" + there + "/r'><link rel=preconnect href='"
               + there + "'><link rel=stylesheet href='" + there + "/s'><style>@import '" + there
               + "/i'; p { background: url(" + there + "/b) }</style></head><body><p>Kept</p><img src='" + there
               + "/p'><iframe src='" + there + "/f'></iframe><iframe sandbox srcdoc=\"<img src='" + there
               + "/n'>\"></iframe><iframe src='" + file + "'></iframe><object data='" + file
               + "'></object><img src='http://192.0.2.1/x'>"
               + "<script>document.write('WRITTEN')</script></body></html>");
    EXPECT_FALSE(listener.wasReached());
    EXPECT_THAT(text(), HasSubstr("Kept"));
    EXPECT_THAT(text(), Not(HasSubstr("PLANTED")));
    EXPECT_THAT(text(), Not(HasSubstr("WRITTEN")));
    EXPECT_THAT(log(), HasSubstr("pdf-render refused scheme=http host=127.0.0.1:"));
    EXPECT_THAT(log(), HasSubstr("pdf-render refused scheme=http host=192.0.2.1\n"));
    EXPECT_THAT(log(), HasSubstr("pdf-render refused scheme=file\n"));
}

TEST_F(PdfProgram, ADocumentThatLeadsElsewhereIsPrintedItselfOrNotAtAll) {
    for (const std::string url : {"", "about:blank", "about:srcdoc", "data:text/html,Other"}) {
        const ProgramResult result =
            render("<html><head><meta http-equiv=refresh content='0;url=" + url + "'></head><body>Kept</body></html>");
        if (result.status == 0)
            EXPECT_THAT(text(), HasSubstr("Kept")) << url;
        else
            EXPECT_THAT(log(), HasSubstr("reason=The document sent the browser engine to another one.")) << url;
    }
}

TEST_F(PdfProgram, PicturesWithinTheDocumentAreShown) {
    renderWell("<body style='margin:0'><img width=800 height=400 src='data:image/gif;base64,"
               "R0lGODlhAQABAIAAAP8AAP///yH5BAAAAAAALAAAAAABAAEAAAICRAEAOw=='>");
    EXPECT_EQ(picture().at(20, 20), red);
}

TEST_F(PdfProgram, AFileOfThatNameIsReplaced) {
    std::filesystem::create_directory(folder / "out");
    std::ofstream(folder / "out/a.pdf") << "old";
    renderWell("<p>new</p>");
    EXPECT_THAT(text(), HasSubstr("new"));
}

TEST_F(PdfProgram, AFolderThatCannotBeMadeIsTheFileSystemsError) {
    std::ofstream(folder / "out") << "a file";
    const ProgramResult result = render("<p>x</p>");
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("Domain=NSPOSIXErrorDomain Code=")) << result;
}

TEST_F(PdfProgram, BlankPartsOfTheRequestAreUsageErrors) {
    EXPECT_THAT(render(" ").errorOutput, HasSubstr("Code=64 \"PDF render request is missing HTML content.\""));
    EXPECT_THAT(render("x", R"("outputPath":" ")").errorOutput,
                HasSubstr("Code=64 \"PDF render request is missing an output path.\""));
}

TEST_F(PdfProgram, WhatAKilledRunLeftIsRemovedByTheNext) {
    program.deadline = std::chrono::milliseconds(150);
    EXPECT_EQ(render("<p>x</p>" + std::string(20'000'000, 'y')).status, -1);
    program.deadline = std::chrono::seconds(50);
    renderWell("<p>x</p>");
}

} // namespace
} // namespace vesk::test
