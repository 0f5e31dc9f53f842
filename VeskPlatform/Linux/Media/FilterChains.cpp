#include "VeskPlatform/Linux/Media/FilterChains.hpp"

#include <array>
#include <cstdio>

extern "C" {
#include <libavutil/pixdesc.h>
}

namespace vesk {
namespace {

/// Clips that do not say so are of BT.709 from this height on, as players take them.
constexpr int highDefinition = 720;

/// To linear light, to the primaries of BT.709, down to its brightness, and back.
constexpr const char* toneMapping = "zscale=t=linear:npl=100,format=gbrpf32le,zscale=p=bt709,"
                                    "tonemap=tonemap=hable:desat=0,zscale=t=bt709:m=bt709:r=tv,format=yuv420p,";

std::string turning(Orientation orientation) {
    static constexpr std::array<const char*, 4> turns{"", "transpose=clock,", "hflip,vflip,", "transpose=cclock,"};
    return std::string(orientation.mirrored ? "hflip," : "")
           + turns.at(static_cast<std::size_t>(orientation.quarterTurns));
}

bool isHighDynamicRange(const AVFrame& picture) {
    return picture.color_trc == AVCOL_TRC_SMPTE2084 || picture.color_trc == AVCOL_TRC_ARIB_STD_B67;
}

bool hasFlag(const AVFrame& picture, unsigned flag) {
    const AVPixFmtDescriptor* format = av_pix_fmt_desc_get(static_cast<AVPixelFormat>(picture.format));
    return format != nullptr && (format->flags & flag) != 0;
}

std::string inputMatrix(const AVFrame& picture) {
    const bool isUnknown = picture.colorspace == AVCOL_SPC_UNSPECIFIED && !hasFlag(picture, AV_PIX_FMT_FLAG_RGB);
    return isUnknown && picture.height >= highDefinition ? ":in_color_matrix=bt709" : "";
}

template <class... Numbers> std::string printed(const char* format, Numbers... numbers) {
    std::array<char, 256> text{};
    (void)std::snprintf(text.data(), text.size(), format, numbers...);
    return text.data();
}

} // namespace

FilterChain clipChain(Orientation orientation, const PixelRectangle& rectangle, int frameWidth, int frameHeight) {
    return [=](const AVFrame& picture) {
        return (isHighDynamicRange(picture) ? toneMapping : "") + turning(orientation)
               + printed("scale=%d:%d:flags=bicubic+accurate_rnd:out_color_matrix=bt709:out_range=tv", rectangle.width,
                         rectangle.height)
               + inputMatrix(picture)
               + printed(",format=yuv420p,pad=%d:%d:%d:%d:black,setsar=1", frameWidth, frameHeight, rectangle.x,
                         rectangle.y);
    };
}

/// A JPEG that does not say otherwise is of BT.601, which is also what the scaler takes such pictures for.
FilterChain pictureChain(Orientation orientation, int width, int height) {
    return [=](const AVFrame& picture) {
        return turning(orientation)
               + (hasFlag(picture, AV_PIX_FMT_FLAG_ALPHA) ? "format=gbrap,premultiply=inplace=1," : "")
               + printed("scale=%d:%d:flags=bicubic+accurate_rnd+full_chroma_int,format=bgra", width, height);
    };
}

FilterChain encoderChain() {
    return [](const AVFrame&) {
        return "scale=flags=bicubic+accurate_rnd+full_chroma_int:out_color_matrix=bt709:out_range=tv,format=yuv420p,"
               "setsar=1";
    };
}

} // namespace vesk
