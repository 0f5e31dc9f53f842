#include "VeskPlatform/Linux/Media/FramePlacer.hpp"

#include <array>
#include <cstdio>
#include <new>

extern "C" {
#include <libavfilter/buffersink.h>
#include <libavfilter/buffersrc.h>
}

namespace vesk {
namespace {

constexpr const char* action = "turning and scaling a picture";

AVFilterContext* makeEnd(AVFilterGraph& graph, const char* filter, const char* name, const char* arguments) {
    AVFilterContext* end = nullptr;
    checked(avfilter_graph_create_filter(&end, avfilter_get_by_name(filter), name, arguments, nullptr, &graph), action);
    return end;
}

AVFilterInOut* openEnd(const char* name, AVFilterContext* filter) {
    AVFilterInOut* end = avfilter_inout_alloc();
    if (end == nullptr) throw std::bad_alloc();
    *end = {.name = av_strdup(name), .filter_ctx = filter, .pad_idx = 0, .next = nullptr};
    return end;
}

} // namespace

FramePlacer::Form FramePlacer::formOf(const AVFrame& picture) {
    return {picture.width, picture.height, picture.format, picture.colorspace, picture.color_range, picture.color_trc};
}

void FramePlacer::setUp(const AVFrame& picture) {
    std::array<char, 128> form{};
    (void)std::snprintf(form.data(), form.size(), "video_size=%dx%d:pix_fmt=%d:time_base=1/1000:pixel_aspect=1/1",
                        picture.width, picture.height, picture.format);
    graph_.reset(avfilter_graph_alloc());
    if (!graph_) throw std::bad_alloc();
    source_ = makeEnd(*graph_, "buffer", "in", form.data());
    sink_ = makeEnd(*graph_, "buffersink", "out", nullptr);
    AVFilterInOut* outputs = openEnd("in", source_);
    AVFilterInOut* inputs = openEnd("out", sink_);
    const int parsed = avfilter_graph_parse_ptr(graph_.get(), chain_(picture).c_str(), &inputs, &outputs, nullptr);
    avfilter_inout_free(&inputs);
    avfilter_inout_free(&outputs);
    checked(parsed, action);
    checked(avfilter_graph_config(graph_.get(), nullptr), action);
    form_ = formOf(picture);
}

FramePointer FramePlacer::placed(const AVFrame& picture) {
    if (form_ != formOf(picture)) setUp(picture);
    const FramePointer shared = sharedFrame(picture);
    shared->sample_aspect_ratio = {1, 1};
    checked(av_buffersrc_write_frame(source_, shared.get()), action);
    FramePointer result = makeFrame();
    checked(av_buffersink_get_frame(sink_, result.get()), action);
    return result;
}

} // namespace vesk
