#include "VeskPlatform/Linux/BinaryListSize.hpp"

#include <cstdint>
#include <optional>
#include <vector>

namespace vesk {
namespace {

constexpr std::size_t trailerSize = 32;
constexpr std::uint64_t mostWeight = 4'000'000, bytesOfWeight = 64;
constexpr int deepest = 512;

struct Malformed {};

enum ObjectKind : unsigned {
    number = 0x1,
    data = 0x4,
    text = 0x5,
    wideText = 0x6,
    array = 0xA,
    orderedSet = 0xB,
    set = 0xC,
    dictionary = 0xD
};

/// Weighs the values of a list: one each, and one for each so many bytes of texts and data.
class Weighing {
public:
    explicit Weighing(std::string_view bytes) : bytes_(bytes) {
        if (bytes.size() < trailerSize) throw Malformed{};
        const std::size_t trailer = bytes.size() - trailerSize;
        offsetSize_ = readNumber(trailer + 6, 1);
        referenceSize_ = readNumber(trailer + 7, 1);
        count_ = readNumber(trailer + 8, 8);
        table_ = readNumber(trailer + 24, 8);
        if (count_ > bytes.size()) throw Malformed{};
        weights_.resize(count_);
    }

    std::uint64_t whole() { return weigh(readNumber(bytes_.size() - 16, 8), 0); }

private:
    enum class Progress { unseen, open, done };
    struct Weight {
        Progress progress = Progress::unseen;
        std::uint64_t value = 0;
    };
    struct Object {
        unsigned kind = 0;
        std::uint64_t count = 0, content = 0;
    };

    /// Most significant byte first.
    std::uint64_t readNumber(std::uint64_t at, std::uint64_t size) const {
        if (size == 0 || size > 8 || at > bytes_.size() || size > bytes_.size() - at) throw Malformed{};
        std::uint64_t value = 0;
        for (const char byte : bytes_.substr(at, size)) value = value << 8U | static_cast<unsigned char>(byte);
        return value;
    }

    Object objectAt(std::uint64_t at) const {
        const std::uint64_t marker = readNumber(at, 1);
        Object object{static_cast<unsigned>(marker >> 4U), marker & 0xFU, at + 1};
        if (object.count != 0xF || object.kind < data) return object;
        const std::uint64_t sizeMarker = readNumber(at + 1, 1);
        if (sizeMarker >> 4U != number) throw Malformed{};
        const std::uint64_t size = std::uint64_t{1} << (sizeMarker & 0xFU);
        object.count = readNumber(at + 2, size);
        object.content = at + 2 + size;
        return object;
    }

    std::uint64_t weigh(std::uint64_t index, int depth) {
        if (index >= count_ || depth > deepest) throw Malformed{};
        Weight& weight = weights_[index];
        if (weight.progress == Progress::open) throw Malformed{};
        if (weight.progress == Progress::done) return weight.value;
        weight.progress = Progress::open;
        weight.value = weightOf(objectAt(readNumber(table_ + index * offsetSize_, offsetSize_)), depth);
        weight.progress = Progress::done;
        return weight.value;
    }

    std::uint64_t weightOf(const Object& object, int depth) {
        switch (object.kind) {
        case data:
        case text: return 1 + object.count / bytesOfWeight;
        case wideText: return 1 + object.count / (bytesOfWeight / 2);
        case array:
        case orderedSet:
        case set: return weightOfChildren(object, object.count, depth);
        case dictionary: return weightOfChildren(object, object.count > bytes_.size() ? 0 : object.count * 2, depth);
        default: return 1;
        }
    }

    std::uint64_t weightOfChildren(const Object& object, std::uint64_t children, int depth) {
        if (object.count > bytes_.size()) throw Malformed{};
        std::uint64_t sum = 1;
        for (std::uint64_t i = 0; i < children; ++i) {
            sum += weigh(readNumber(object.content + i * referenceSize_, referenceSize_), depth + 1);
            if (sum > mostWeight) throw Malformed{};
        }
        return sum;
    }

    std::string_view bytes_;
    std::uint64_t offsetSize_ = 0, referenceSize_ = 0, count_ = 0, table_ = 0;
    std::vector<Weight> weights_;
};

} // namespace

bool binaryListStaysSmall(std::string_view bytes) {
    try {
        return Weighing(bytes).whole() <= mostWeight;
    } catch (const Malformed&) {
        return false;
    }
}

} // namespace vesk
