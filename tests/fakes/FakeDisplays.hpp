#pragma once

#include "VeskPlatform/Displays.hpp"
#include "VeskPlatform/ScreenImages.hpp"

#include <algorithm>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

/// A picture of which only the size and a name are known.
class FakeImage : public ScreenImage {
public:
    FakeImage(std::string label, std::size_t width, std::size_t height)
        : name(std::move(label)), width_(width), height_(height) {}
    std::string name;
    std::size_t width() const override { return width_; }
    std::size_t height() const override { return height_; }

private:
    std::size_t width_, height_;
};

/// Displays with bounds, in the order in which they were added. Their pictures are named "display N" and have `scale`
/// pixels to a point.
class FakeDisplays : public Displays {
public:
    struct Display {
        DisplayIdentifier identifier = 0;
        ScreenRectangle place;
        double scale = 1;
        bool captures = true;
    };
    std::vector<Display> all;
    bool countFails = false, listFails = false;
    /// What happens in the world between the count and the list.
    std::function<void()> whenCounted = [] {};
    int captured = 0;

    std::optional<std::size_t> count() override {
        if (countFails) return std::nullopt;
        const std::size_t known = all.size();
        whenCounted();
        return known;
    }
    std::optional<std::vector<DisplayIdentifier>> list(std::size_t capacity) override {
        if (listFails) return std::nullopt;
        std::vector<DisplayIdentifier> identifiers;
        for (const Display& display : all)
            if (identifiers.size() < capacity) identifiers.push_back(display.identifier);
        return identifiers;
    }
    ScreenRectangle bounds(DisplayIdentifier display) override { return find(display).place; }
    std::unique_ptr<ScreenImage> capture(DisplayIdentifier display) override {
        const Display found = find(display);
        ++captured;
        if (!found.captures) return nullptr;
        return std::make_unique<FakeImage>("display " + std::to_string(display),
                                           static_cast<std::size_t>(found.place.width * found.scale),
                                           static_cast<std::size_t>(found.place.height * found.scale));
    }

private:
    Display find(DisplayIdentifier display) const {
        const auto found = std::ranges::find(all, display, &Display::identifier);
        return found == all.end() ? Display{.identifier = 0, .place = {}, .captures = false} : *found;
    }
};

/// Records what is drawn and written. `fails` names the steps that fail: "context", "image", "destination" and
/// "finalize".
class FakeScreenImages : public ScreenImages {
public:
    struct Drawing {
        std::string name;
        ScreenRectangle rectangle;
        bool operator==(const Drawing&) const = default;
    };
    std::set<std::string> fails;
    std::vector<std::pair<std::size_t, std::size_t>> contexts;
    std::vector<Drawing> drawn;
    /// Path and size.
    std::vector<std::pair<std::string, std::pair<std::size_t, std::size_t>>> written;

    std::unique_ptr<BitmapContext> createContext(std::size_t width, std::size_t height) override {
        if (fails.contains("context")) return nullptr;
        contexts.emplace_back(width, height);
        return std::make_unique<Context>(*this, width, height);
    }
    std::unique_ptr<ImageDestination> createPng(const std::string& path) override {
        if (fails.contains("destination")) return nullptr;
        return std::make_unique<Destination>(*this, path);
    }

private:
    class Context : public BitmapContext {
    public:
        Context(FakeScreenImages& images, std::size_t width, std::size_t height)
            : images_(images), width_(width), height_(height) {}
        void draw(const ScreenImage& image, const ScreenRectangle& rectangle) override {
            images_.drawn.push_back({dynamic_cast<const FakeImage&>(image).name, rectangle});
        }
        std::unique_ptr<ScreenImage> makeImage() override {
            if (images_.fails.contains("image")) return nullptr;
            return std::make_unique<FakeImage>("canvas", width_, height_);
        }

    private:
        FakeScreenImages& images_;
        std::size_t width_, height_;
    };

    class Destination : public ImageDestination {
    public:
        Destination(FakeScreenImages& images, std::string path) : images_(images), path_(std::move(path)) {}
        bool finalize(const ScreenImage& image) override {
            if (images_.fails.contains("finalize")) return false;
            images_.written.push_back({path_, {image.width(), image.height()}});
            return true;
        }

    private:
        FakeScreenImages& images_;
        std::string path_;
    };
};

} // namespace vesk::test
