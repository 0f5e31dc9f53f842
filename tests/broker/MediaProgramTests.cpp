// The built broker composes reels of what other programs made; ffprobe and ffmpeg look at what comes out.

#include "tests/support/ProgramRun.hpp"

#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sstream>
#include <sys/stat.h>

namespace vesk::test {
namespace {

using testing::HasSubstr;
using testing::Not;

struct Colour {
    int red = 0, green = 0, blue = 0;
};

/// Within what a lossy encoder does to flat colours.
bool near(const Colour& one, const Colour& other, int tolerance = 24) {
    return std::abs(one.red - other.red) <= tolerance && std::abs(one.green - other.green) <= tolerance
           && std::abs(one.blue - other.blue) <= tolerance;
}

std::ostream& operator<<(std::ostream& stream, const Colour& colour) {
    return stream << colour.red << "," << colour.green << "," << colour.blue;
}

constexpr Colour black{0, 0, 0}, red{255, 0, 0}, lime{0, 255, 0}, blue{0, 0, 255}, yellow{255, 255, 0};

/// A frame at a tenth of its size: 108 x 192.
struct Frame {
    std::string bytes;
    Colour at(int x, int y) const {
        const auto value = [&](int channel) {
            return static_cast<int>(
                static_cast<unsigned char>(bytes.at(static_cast<std::size_t>((y * 108 + x) * 3 + channel))));
        };
        return {value(0), value(1), value(2)};
    }
};

#define EXPECT_COLOUR(actual, expected) EXPECT_TRUE(near(actual, expected)) << (actual) << " for " << (expected)

class MediaProgram : public testing::Test {
protected:
    ProgramRun program{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};
    std::filesystem::path folder = program.folder();

    MediaProgram() {
        program.environment["VESK_APP_SUPPORT_DIR"] = (folder / "support").string();
        program.environment["TMPDIR"] = (folder / "temporary").string();
        std::filesystem::create_directory(folder / "temporary");
        program.deadline = std::chrono::seconds(120); // encoding takes its time on a busy machine
    }

    std::string path(const std::string& name) const { return (folder / name).string(); }

    static std::string run(const std::string& name, const std::vector<std::string>& arguments) {
        ProgramRun tool("/usr/bin/" + name);
        const ProgramResult result = tool.run(arguments);
        EXPECT_EQ(result.status, 0) << result;
        return result.output + result.errorOutput;
    }
    void ffmpeg(std::vector<std::string> arguments, const std::string& output) const {
        arguments.insert(arguments.begin(), {"-y", "-loglevel", "error"});
        arguments.push_back(path(output));
        run("ffmpeg", arguments);
    }
    /// Four colours: red and lime above blue and yellow.
    void quarters(const std::string& output, const std::string& size) const {
        const std::string colour = "color=c=";
        ffmpeg({"-f",
                "lavfi",
                "-i",
                colour + "red:s=" + size,
                "-f",
                "lavfi",
                "-i",
                colour + "lime:s=" + size,
                "-f",
                "lavfi",
                "-i",
                colour + "blue:s=" + size,
                "-f",
                "lavfi",
                "-i",
                colour + "yellow:s=" + size,
                "-filter_complex",
                "[0][1]hstack[a];[2][3]hstack[b];[a][b]vstack",
                "-frames:v",
                "1"},
               output);
    }
    /// Two seconds of four colours with a tone.
    void clip(const std::string& output, const std::string& size = "480x270") const {
        quarters("quarters.png", size);
        ffmpeg({"-loop", "1", "-t", "2", "-r", "25", "-i", path("quarters.png"), "-f", "lavfi", "-i",
                "sine=440:duration=2", "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac", "-shortest"},
               output);
    }

    ProgramResult compose(const std::vector<std::string>& inputs, const std::string& rest = "") {
        std::ofstream request(folder / "request.json");
        request << R"({"profile":"instagram_reel","inputs":[)";
        for (std::size_t i = 0; i < inputs.size(); ++i)
            request << (i == 0 ? "" : ",") << R"({"path":")" << path(inputs[i]) << R"("})";
        request << R"(],"outputPath":")" << path("out/reel.mp4") << '"' << (rest.empty() ? "" : ",") << rest << "}";
        request.close();
        const ProgramResult result = program.run({"media-compose", "--request", path("request.json")});
        EXPECT_TRUE(std::filesystem::is_empty(folder / "temporary"));
        return result;
    }
    void composeWell(const std::vector<std::string>& inputs, const std::string& rest = "") {
        const ProgramResult result = compose(inputs, rest);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        answer = result.output;
    }
    void expectFailure(const std::vector<std::string>& inputs, const std::string& message) {
        const ProgramResult result = compose(inputs);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_THAT(result.errorOutput, HasSubstr("Domain=VeskMediaOperations Code=64 \"" + message + "\"")) << result;
    }
    std::string probe(const std::string& stream, const std::string& entries) const {
        std::string text = run("ffprobe", {"-v", "error", "-select_streams", stream, "-count_packets", "-show_entries",
                                           "stream=" + entries, "-of", "csv=p=0", path("out/reel.mp4")});
        if (!text.empty() && text.back() == '\n') text.pop_back();
        return text;
    }
    Frame frame(double seconds) const {
        ffmpeg({"-ss", std::to_string(seconds), "-i", path("out/reel.mp4"), "-frames:v", "1", "-vf",
                "scale=108:192:flags=area:in_color_matrix=bt709", "-f", "rawvideo", "-pix_fmt", "rgb24"},
               "frame.rgb");
        std::ifstream file(folder / "frame.rgb", std::ios::binary);
        return {{std::istreambuf_iterator<char>(file), {}}};
    }
    /// The mean volume over half a second, in decibels; about -91 is silence.
    double volume(double from) const {
        const std::string text = run("ffmpeg", {"-hide_banner", "-ss", std::to_string(from), "-t", "0.5", "-i",
                                                path("out/reel.mp4"), "-af", "volumedetect", "-f", "null", "-"});
        const std::string label = "mean_volume: ";
        const std::size_t place = text.find(label);
        return place == std::string::npos ? 0 : std::stod(text.substr(place + label.size()));
    }
    void expectQuarters(const Frame& shown, const std::array<Colour, 4>& expected, int top, int bottom) const {
        EXPECT_COLOUR(shown.at(20, top), expected[0]);
        EXPECT_COLOUR(shown.at(88, top), expected[1]);
        EXPECT_COLOUR(shown.at(20, bottom), expected[2]);
        EXPECT_COLOUR(shown.at(88, bottom), expected[3]);
    }
    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }
    std::string read(const std::string& name) const {
        std::ifstream file(folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string answer;
};

TEST_F(MediaProgram, JoinsAPictureAndAClip) {
    quarters("a.png", "200x200");
    clip("b.mp4");
    composeWell({"a.png", "b.mp4"});
    EXPECT_THAT(answer, HasSubstr("\"durationSeconds\" : 5,"));
    EXPECT_THAT(answer, HasSubstr("\"inputCount\" : 2,"));
    EXPECT_EQ(probe("v", "codec_name,profile,width,height,pix_fmt,color_space,r_frame_rate,nb_read_packets"),
              "h264,High,1080,1920,yuv420p,bt709,30/1,150");
    EXPECT_EQ(probe("a", "codec_name,sample_rate,channels"), "aac,48000,2");
    const std::string bytes = read("out/reel.mp4");
    EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
}

TEST_F(MediaProgram, ASquarePictureHasBlackBars) {
    quarters("a.png", "200x200");
    composeWell({"a.png"});
    for (const double time : {0.0, 1.5, 2.96}) {
        const Frame shown = frame(time);
        EXPECT_COLOUR(shown.at(54, 20), black);
        EXPECT_COLOUR(shown.at(54, 170), black);
        expectQuarters(shown, {red, lime, blue, yellow}, 60, 130);
    }
    EXPECT_EQ(probe("a", "codec_name"), "");
}

TEST_F(MediaProgram, ThePicturesDurationIsKept) {
    quarters("a.png", "200x200");
    composeWell({"a.png"}, R"("imageDurationSeconds":3.3)");
    EXPECT_EQ(probe("v", "nb_read_packets"), "99");
    EXPECT_THAT(answer, HasSubstr("\"durationSeconds\" : 3.3,"));
}

TEST_F(MediaProgram, SoundLiesWhereItsClipLies) {
    quarters("a.png", "200x200");
    clip("b.mp4");
    composeWell({"a.png", "b.mp4", "a.png"});
    EXPECT_LT(volume(1), -80);
    EXPECT_GT(volume(3.5), -30);
    EXPECT_GT(volume(4.4), -30);
    EXPECT_LT(volume(6), -80);
}

TEST_F(MediaProgram, SoundOfSixChannelsIsMixedDown) {
    ffmpeg({"-f", "lavfi", "-i", "testsrc=s=320x240:d=1", "-f", "lavfi", "-i", "sine=440:d=1", "-af", "pan=5.1|c2=c0",
            "-c:a", "aac", "-shortest"},
           "centre.mov");
    composeWell({"centre.mov"});
    EXPECT_EQ(probe("a", "channels"), "2");
    EXPECT_GT(volume(0.2), -40);
}

TEST_F(MediaProgram, SoundThatChangesItsChannelsInTheMiddleIsKept) {
    for (const std::string channels : {"6", "1"})
        ffmpeg({"-f", "lavfi", "-i", "testsrc=s=320x240:d=1", "-f", "lavfi", "-i", "sine=440:d=1", "-c:a", "ac3", "-ac",
                channels, "-shortest"},
               channels + ".mp4");
    write("list", "file '6.mp4'\nfile '1.mp4'\n");
    ffmpeg({"-f", "concat", "-i", path("list"), "-c", "copy"}, "changing.mp4");
    composeWell({"changing.mp4"});
    EXPECT_GT(volume(0.2), -40);
    EXPECT_GT(volume(1.3), -40);
}

/// Exif's orientation in front of a JPEG's own data.
std::string withOrientation(const std::string& jpeg, char value) {
    const char exif[] = "\xFF\xE1\x00\x22"
                        "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0v\0\0\0\0\0\0";
    std::string segment(exif, sizeof exif - 1);
    segment[segment.find('v')] = value;
    return jpeg.substr(0, 2) + segment + jpeg.substr(2);
}

TEST_F(MediaProgram, ThePhonesOrientationOfAJpegIsApplied) {
    quarters("plain.jpg", "400x200"); // twice as wide as high
    const std::string jpeg = read("plain.jpg");
    const std::pair<char, std::array<Colour, 4>> cases[] = {
        {1, {red, lime, blue, yellow}}, {2, {lime, red, yellow, blue}}, {3, {yellow, blue, lime, red}},
        {4, {blue, yellow, red, lime}}, {5, {red, blue, lime, yellow}}, {6, {blue, red, yellow, lime}},
        {7, {yellow, lime, blue, red}}, {8, {lime, yellow, red, blue}}};
    std::vector<std::string> inputs;
    for (const auto& [value, colours] : cases) {
        inputs.push_back("o" + std::to_string(static_cast<int>(value)) + ".jpg");
        write(inputs.back(), withOrientation(jpeg, value));
    }
    composeWell(inputs);
    double time = 1;
    for (const auto& [value, colours] : cases) {
        SCOPED_TRACE(static_cast<int>(value));
        // Upright, they are 108 x 54 or 96 x 192.
        if (value < 5)
            expectQuarters(frame(time), colours, 80, 110);
        else
            expectQuarters(frame(time), colours, 40, 150);
        time += 3;
    }
}

TEST_F(MediaProgram, TheOrientationOfAPngIsApplied) {
    quarters("plain.png", "400x200");
    const std::string png = read("plain.png");
    const char chunk[] = "\0\0\0\x1A"
                         "eXIfMM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0"
                         "\0\0\0\0"; // nobody looks at the checksum
    constexpr std::size_t afterHeader = 33;
    write("turned.png", png.substr(0, afterHeader) + std::string(chunk, sizeof chunk - 1) + png.substr(afterHeader));
    composeWell({"turned.png"});
    expectQuarters(frame(1), {blue, red, yellow, lime}, 40, 150);
}

TEST_F(MediaProgram, TransparentPlacesOfAPictureAreBlack) {
    ffmpeg({"-f", "lavfi", "-i", "color=c=red@0.5:s=200x200,format=rgba", "-frames:v", "1"}, "half.png");
    composeWell({"half.png"});
    EXPECT_COLOUR(frame(1).at(54, 96), (Colour{128, 0, 0}));
}

TEST_F(MediaProgram, PicturesOfOtherFormatsAreRead) {
    quarters("a.webp", "200x200");
    ffmpeg({"-f", "lavfi", "-i", "color=c=blue:s=200x200:d=1:r=2", "-vf", "hue=h=120*n"}, "b.gif");
    quarters("c.png", "200x200");
    run("heif-enc", {path("c.png"), "-o", path("c.heic")});
    composeWell({"a.webp", "b.gif", "c.heic"});
    expectQuarters(frame(1), {red, lime, blue, yellow}, 60, 130);
    EXPECT_COLOUR(frame(4).at(54, 96), blue);
    expectQuarters(frame(7), {red, lime, blue, yellow}, 60, 130);
}

/// Replaces the display matrix of a clip's first track.
std::string withMatrix(std::string movie, const std::array<int, 9>& matrix) {
    std::size_t place = movie.find("tkhd") + 4 + 40;
    for (const int entry : matrix)
        for (int shift = 24; shift >= 0; shift -= 8)
            movie[place++] = static_cast<char>(static_cast<unsigned>(entry) >> static_cast<unsigned>(shift) & 0xFFU);
    return movie;
}

TEST_F(MediaProgram, ATurnedOrMirroredClipIsShownUpright) {
    clip("plain.mov", "240x120"); // pictures of 480 x 240
    constexpr int one = 65536, unit = 1 << 30;
    const std::string movie = read("plain.mov");
    write("turned.mov", withMatrix(movie, {0, one, 0, -one, 0, 0, 240 * one, 0, unit}));
    write("mirrored.mov", withMatrix(movie, {-one, 0, 0, 0, one, 0, 480 * one, 0, unit}));
    composeWell({"turned.mov", "mirrored.mov"});
    expectQuarters(frame(1), {blue, red, yellow, lime}, 40, 150);
    expectQuarters(frame(3), {lime, red, yellow, blue}, 80, 110);
}

TEST_F(MediaProgram, AClipOfUnevenPaceKeepsItsTimes) {
    // Red until a second has gone, then lime, in two frames and a last one that ends it.
    ffmpeg({"-f", "lavfi", "-i", "color=c=red:s=320x240:d=2:r=10", "-vf",
            "drawbox=c=lime:t=fill:enable='gte(t,1)',select='eq(n,0)+eq(n,10)+eq(n,19)'", "-vsync", "vfr", "-c:v",
            "libx264", "-pix_fmt", "yuv420p"},
           "uneven.mp4");
    composeWell({"uneven.mp4"});
    EXPECT_COLOUR(frame(0.5).at(54, 96), red);
    EXPECT_COLOUR(frame(0.9).at(54, 96), red);
    EXPECT_COLOUR(frame(1.1).at(54, 96), lime);
}

TEST_F(MediaProgram, ClipsOfOddSizesAndSquashedPixelsFit) {
    ffmpeg({"-f", "lavfi", "-i", "color=c=red:s=321x241:d=1", "-c:v", "libx264", "-pix_fmt", "yuv444p"}, "odd.mp4");
    ffmpeg({"-f", "lavfi", "-i", "color=c=lime:s=300x600:d=1", "-vf", "setsar=2", "-c:v", "libx264", "-pix_fmt",
            "yuv420p"},
           "squashed.mp4");
    composeWell({"odd.mp4", "squashed.mp4"});
    EXPECT_COLOUR(frame(0.5).at(54, 96), red);
    const Frame square = frame(1.5); // 600 x 600 as it is meant
    EXPECT_COLOUR(square.at(4, 96), lime);
    EXPECT_COLOUR(square.at(54, 30), black);
}

TEST_F(MediaProgram, WhatTheFileSaysOfItsPixelsCountsMoreThanTheStream) {
    ffmpeg(
        {"-f", "lavfi", "-i", "color=c=red:s=300x600:d=1", "-vf", "setsar=1", "-c:v", "libx264", "-pix_fmt", "yuv420p"},
        "narrow.mp4");
    ffmpeg({"-i", path("narrow.mp4"), "-c", "copy", "-aspect", "1:1"}, "widened.mp4");
    composeWell({"widened.mp4"});
    EXPECT_COLOUR(frame(0.5).at(4, 96), red);
    EXPECT_COLOUR(frame(0.5).at(104, 96), red);
    EXPECT_COLOUR(frame(0.5).at(54, 30), black);
}

TEST_F(MediaProgram, HighDynamicRangeIsMappedDown) {
    ffmpeg({"-f", "lavfi", "-i", "color=c=gray:s=320x320:d=1", "-vf",
            "format=yuv420p10le,setparams=color_primaries=bt2020:color_trc=smpte2084:colorspace=bt2020nc", "-c:v",
            "libx265", "-x265-params", "log-level=none:colorprim=bt2020:transfer=smpte2084:colormatrix=bt2020nc"},
           "hdr.mp4");
    composeWell({"hdr.mp4"});
    // Half of the code range stands for 92 of 10,000 candela: nearly a screen's white, not the gray that it looks like.
    EXPECT_GT(frame(0.5).at(54, 96).red, 150);
    EXPECT_EQ(probe("v", "color_transfer"), "bt709");
}

TEST_F(MediaProgram, AClipThatIsCutOffHoldsItsLastPicture) {
    clip("whole.mp4");
    ffmpeg({"-i", path("whole.mp4"), "-c", "copy", "-movflags", "+faststart"}, "front.mp4");
    const std::string movie = read("front.mp4");
    write("cut.mp4", movie.substr(0, movie.size() * 3 / 4));
    composeWell({"cut.mp4"});
    EXPECT_EQ(probe("v", "nb_read_packets"), "60");
    const std::string whole = read("whole.mp4");
    write("headless.mp4", whole.substr(0, whole.size() / 2));
    expectFailure({"headless.mp4"}, "Media input has no playable duration: headless.mp4");
}

TEST_F(MediaProgram, FilesThatAreNotWhatTheirNameSaysAreNamed) {
    write("empty.png", "");
    write("text.jpg", "no picture at all\n");
    write("text.mp4", "no clip at all\n");
    write("list.mov", "ffconcat version 1.0\nfile '/etc/hostname'\n");
    expectFailure({"empty.png"}, "Unable to read image: empty.png");
    expectFailure({"text.jpg"}, "Unable to read image: text.jpg");
    for (const std::string name : {"text.mp4", "list.mov"})
        expectFailure({name}, "Media input has no playable duration: " + name);
    run("ffmpeg", {"-y", "-loglevel", "error", "-f", "lavfi", "-i", "sine=440:d=1", path("sound.mp4")});
    expectFailure({"sound.mp4"}, "Media input has no video track: sound.mp4");
}

TEST_F(MediaProgram, APipeThatNobodyWritesToIsNotWaitedFor) {
    program.deadline = std::chrono::seconds(20);
    for (const char* name : {"pipe.png", "pipe.mp4"}) ASSERT_EQ(::mkfifo(path(name).c_str(), 0600), 0);
    expectFailure({"pipe.png"}, "Unable to read image: pipe.png");
    expectFailure({"pipe.mp4"}, "Media input has no playable duration: pipe.mp4");
}

TEST_F(MediaProgram, APictureOfAnotherFormatThanItsNameIsRead) {
    quarters("really.png", "200x200");
    std::filesystem::rename(path("really.png"), path("called.jpg"));
    composeWell({"called.jpg"});
    expectQuarters(frame(1), {red, lime, blue, yellow}, 60, 130);
}

TEST_F(MediaProgram, APictureThatIsNotWholeIsRefused) {
    ffmpeg({"-f", "lavfi", "-i", "testsrc2=s=400x300", "-frames:v", "1"}, "whole.jpg");
    const std::string whole = read("whole.jpg");
    write("half.jpg", whole.substr(0, whole.size() / 2));
    expectFailure({"half.jpg"}, "Unable to decode image: half.jpg");
    write("unended.jpg", whole.substr(0, whole.size() - 2)); // but for the marker of its end
    write("longer.jpg", whole + std::string(1000, 'x'));
    composeWell({"unended.jpg", "longer.jpg"});
}

TEST_F(MediaProgram, APictureThatIsTooLargeToDecodeIsRefused) {
    // One bit a pixel, all of it black.
    run("python3", {"-c", R"(
import struct, sys, zlib
def chunk(kind, data):
    return struct.pack('>I', len(data)) + kind + data + struct.pack('>I', zlib.crc32(kind + data))
rows = zlib.compress(bytes(3751) * 30000, 1)
open(sys.argv[1], 'wb').write(b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', struct.pack('>IIBBBBB', 30000, 30000, 1, 0, 0, 0, 0))
                              + chunk(b'IDAT', rows) + chunk(b'IEND', b''))
)",
                    path("huge.png")});
    expectFailure({"huge.png"}, "Unable to decode image: huge.png");
}

TEST_F(MediaProgram, InputsAreAtMost24) {
    expectFailure(std::vector<std::string>(25, "a.png"), "Media composition accepts at most 24 inputs at a time.");
    expectFailure({"gone.png"}, "Media input is no longer available: gone.png");
}

TEST_F(MediaProgram, ADiskThatTakesNoMoreIsTheSystemsError) {
    clip("a.mp4");
    program.launcher = {"/usr/bin/prlimit", "--fsize=20000"};
    const ProgramResult result = compose({"a.mp4"});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("Domain=VeskMediaFramework")) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("File too large")) << result;
    EXPECT_FALSE(std::filesystem::exists(folder / "out/reel.mp4")) << "half a film is none";
}

TEST_F(MediaProgram, WhatAKilledRunLeftIsRemovedByTheNext) {
    quarters("a.png", "200x200");
    std::ofstream(folder / "request.json")
        << R"({"profile":"instagram_reel","inputs":[{"path":")" << path("a.png")
        << R"("}],"imageDurationSeconds":10,"outputPath":")" << path("out/b.mp4") << R"("})";
    program.deadline = std::chrono::milliseconds(200);
    EXPECT_EQ(program.run({"media-compose", "--request", path("request.json")}).status, -1);
    program.deadline = std::chrono::seconds(120);
    composeWell({"a.png"}); // finds the folder for temporary files empty
}

} // namespace
} // namespace vesk::test
