#include "VeskPlatform/Linux/Media/PngOrientation.hpp"

#include <array>
#include <cstdint>
#include <fstream>
#include <libexif/exif-data.h>
#include <memory>
#include <optional>
#include <string_view>

namespace vesk {
namespace {

using namespace std::string_view_literals;

constexpr std::string_view signature = "\x89PNG\r\n\x1A\n"sv;
constexpr std::string_view introduction = "Exif\0\0"sv; // what the library wants in front
constexpr std::uint32_t largestExif = 1U << 20U;
constexpr std::streamoff checksumLength = 4;

struct ExifDeleter {
    void operator()(ExifData* data) const { exif_data_unref(data); }
};

struct Chunk {
    std::uint32_t length;
    std::string type;
};

/// None at the end of the file.
std::optional<Chunk> nextChunk(std::ifstream& file) {
    std::array<char, 8> head{};
    if (!file.read(head.data(), head.size())) return std::nullopt;
    std::uint32_t length = 0;
    for (std::size_t i = 0; i < 4; ++i) length = length << 8U | static_cast<unsigned char>(head.at(i));
    return Chunk{length, std::string(head.data() + 4, 4)};
}

/// Empty where there is none.
std::string exifChunk(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::array<char, signature.size()> head{};
    if (!file.read(head.data(), head.size()) || std::string_view(head.data(), head.size()) != signature) return {};
    while (const auto chunk = nextChunk(file)) {
        if (chunk->type == "eXIf" && chunk->length <= largestExif) {
            std::string data(chunk->length, '\0');
            return file.read(data.data(), chunk->length) ? data : std::string();
        }
        file.seekg(std::streamoff{chunk->length} + checksumLength, std::ios::cur);
    }
    return {};
}

} // namespace

Orientation orientationOfPng(const std::string& path) {
    const std::string chunk = exifChunk(path);
    if (chunk.empty()) return {};
    const std::string text = std::string(introduction) + chunk;
    const std::unique_ptr<ExifData, ExifDeleter> data(exif_data_new_from_data(
        reinterpret_cast<const unsigned char*>(text.data()), static_cast<unsigned>(text.size())));
    if (!data) return {};
    const ExifEntry* entry = exif_content_get_entry(data->ifd[EXIF_IFD_0], EXIF_TAG_ORIENTATION);
    if (entry == nullptr || entry->format != EXIF_FORMAT_SHORT || entry->size < 2) return {};
    return orientationOfExif(exif_get_short(entry->data, exif_data_get_byte_order(data.get())));
}

} // namespace vesk
