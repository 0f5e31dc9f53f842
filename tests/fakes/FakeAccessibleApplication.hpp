#pragma once

#include "tests/support/BusService.hpp"

#include <algorithm>
#include <array>
#include <atspi/atspi-constants.h>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

/// An object on the accessibility bus: the service, and the path there.
using FakeAccessibleName = std::pair<std::string, std::string>;

/// An element as AT-SPI shows it.
struct FakeAccessible {
    AtspiRole role = ATSPI_ROLE_PANEL;
    std::vector<AtspiStateType> states{};
    std::string name{}, description{}, identifier{}, localizedRole{};
    std::map<std::string, std::string> attributes{};
    std::array<std::int32_t, 4> extents{10, 20, 300, 40};
    std::vector<FakeAccessibleName> children{};
    /// Where it says something else than how many children it lists.
    std::optional<std::int32_t> childCount{};
    /// Besides that of every element.
    std::vector<std::string> interfaces{};
    /// ASCII. Where it has the text interface.
    std::optional<std::string> text{};
    std::pair<std::int32_t, std::int32_t> selection{0, 0};
    /// Where it has the value interface.
    std::optional<double> number{};
    bool acceptsText = true;
    /// What a search for focused elements below it finds; none where it cannot be searched.
    std::optional<std::vector<FakeAccessibleName>> focused{};
};

/// An application on the accessibility bus, in the process of the test. Changed by `change` once it serves. With the
/// name "org.a11y.atspi.Registry" it is the list of applications itself.
class FakeAccessibleApplication : public BusService {
public:
    static constexpr const char* root = "/org/a11y/atspi/accessible/root";

    explicit FakeAccessibleApplication(std::string name) : name_(std::move(name)) {
        objects[root].role = ATSPI_ROLE_APPLICATION;
    }
    ~FakeAccessibleApplication() override { stop(); }

    const std::string& name() const { return name_; }
    void serveAt(const std::string& address) { serve(address, name_); }

    /// By their paths.
    std::map<std::string, FakeAccessible> objects;
    /// Methods and properties that are answered with something of another type.
    std::set<std::string> garbled{};
    /// How many calls are still answered.
    std::size_t answersLeft = SIZE_MAX;

    /// Adds an element as the last child of `parent`.
    FakeAccessible& add(const std::string& parent, const std::string& path, AtspiRole role,
                        std::vector<AtspiStateType> states = {}) {
        objects[parent].children.emplace_back(name_, path);
        FakeAccessible& added = objects[path];
        added.role = role;
        added.states = std::move(states);
        return added;
    }

    /// "METHOD PATH" of each call that came, a property by its own name.
    std::vector<std::string> calls() {
        const std::scoped_lock guard(lock_);
        return calls_;
    }
    std::size_t countOf(const std::string& method) {
        const std::scoped_lock guard(lock_);
        const auto isOfMethod = [&](const std::string& call) { return call.starts_with(method + " "); };
        return static_cast<std::size_t>(std::ranges::count_if(calls_, isOfMethod));
    }
    std::optional<std::string> textOf(const std::string& path) {
        const std::scoped_lock guard(lock_);
        return objects[path].text;
    }
    std::optional<double> numberOf(const std::string& path) {
        const std::scoped_lock guard(lock_);
        return objects[path].number;
    }

protected:
    int answer(sd_bus_message& call) override {
        const std::string path = sd_bus_message_get_path(&call);
        const auto found = objects.find(path);
        const std::string request = requestOf(call);
        calls_.push_back(request + " " + path);
        if (answersLeft == 0) return 1;
        --answersLeft;
        if (garbled.contains(request))
            return reply(call, [](sd_bus_message& message) { sd_bus_message_append(&message, "t", UINT64_MAX); });
        if (found == objects.end()) return 0;
        for (const auto method :
             {&FakeAccessibleApplication::answerAccessible, &FakeAccessibleApplication::answerProperty,
              &FakeAccessibleApplication::answerText, &FakeAccessibleApplication::answerSearch})
            if (const int answered = (this->*method)(call, found->second); answered != 0) return answered;
        return 0;
    }

private:
    static constexpr const char* accessible = "org.a11y.atspi.Accessible";
    static constexpr const char* properties = "org.freedesktop.DBus.Properties";

    /// The method's name, or that of the property that is read or written.
    static std::string requestOf(sd_bus_message& call) {
        const char *interface = nullptr, *property = nullptr;
        if (!sd_bus_message_is_method_call(&call, properties, nullptr)) return sd_bus_message_get_member(&call);
        sd_bus_message_read(&call, "ss", &interface, &property);
        sd_bus_message_rewind(&call, 1);
        return property;
    }

    static void write(sd_bus_message& message, const std::vector<FakeAccessibleName>& names) {
        sd_bus_message_open_container(&message, 'a', "(so)");
        for (const auto& [service, path] : names)
            sd_bus_message_append(&message, "(so)", service.c_str(), path.c_str());
        sd_bus_message_close_container(&message);
    }

    static void writeStates(sd_bus_message& message, const std::vector<AtspiStateType>& states) {
        std::uint64_t bits = 0;
        for (const AtspiStateType state : states) bits |= std::uint64_t{1} << state;
        sd_bus_message_append(&message, "au", 2, static_cast<std::uint32_t>(bits),
                              static_cast<std::uint32_t>(bits >> 32));
    }

    static void writeAttributes(sd_bus_message& message, const std::map<std::string, std::string>& attributes) {
        sd_bus_message_open_container(&message, 'a', "{ss}");
        for (const auto& [name, value] : attributes)
            sd_bus_message_append(&message, "{ss}", name.c_str(), value.c_str());
        sd_bus_message_close_container(&message);
    }

    static void writeInterfaces(sd_bus_message& message, const std::vector<std::string>& interfaces) {
        sd_bus_message_open_container(&message, 'a', "s");
        sd_bus_message_append(&message, "s", accessible);
        for (const std::string& interface : interfaces) sd_bus_message_append(&message, "s", interface.c_str());
        sd_bus_message_close_container(&message);
    }

    int answerAccessible(sd_bus_message& call, FakeAccessible& object) {
        if (is(call, accessible, "GetRole"))
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_append(&message, "u", static_cast<std::uint32_t>(object.role));
            });
        if (is(call, accessible, "GetState"))
            return reply(call, [&](sd_bus_message& message) { writeStates(message, object.states); });
        if (is(call, accessible, "GetAttributes"))
            return reply(call, [&](sd_bus_message& message) { writeAttributes(message, object.attributes); });
        if (is(call, accessible, "GetInterfaces"))
            return reply(call, [&](sd_bus_message& message) { writeInterfaces(message, object.interfaces); });
        if (is(call, accessible, "GetChildren"))
            return reply(call, [&](sd_bus_message& message) { write(message, object.children); });
        if (is(call, accessible, "GetChildAtIndex", "i")) return answerChild(call, object);
        if (is(call, accessible, "GetLocalizedRoleName"))
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_append(&message, "s", object.localizedRole.c_str());
            });
        if (is(call, "org.a11y.atspi.Component", "GetExtents", "u"))
            return reply(call, [&](sd_bus_message& message) {
                const auto [x, y, width, height] = object.extents;
                sd_bus_message_append(&message, "(iiii)", x, y, width, height);
            });
        return 0;
    }

    static int answerChild(sd_bus_message& call, const FakeAccessible& object) {
        std::int32_t index = 0;
        sd_bus_message_read(&call, "i", &index);
        if (index < 0 || index >= std::ssize(object.children))
            return fail(call, "org.freedesktop.DBus.Error.Failed", "no such child");
        const auto& [service, path] = object.children[static_cast<std::size_t>(index)];
        return reply(call, [&](sd_bus_message& message) {
            sd_bus_message_append(&message, "(so)", service.c_str(), path.c_str());
        });
    }

    int answerProperty(sd_bus_message& call, FakeAccessible& object) {
        const char *interface = nullptr, *name = nullptr;
        if (is(call, properties, "Set", "ssv")) {
            double number = 0;
            sd_bus_message_read(&call, "ssv", &interface, &name, "d", &number);
            if (!object.number || std::string_view(name) != "CurrentValue") return 0;
            object.number = number;
            return reply(call);
        }
        if (!is(call, properties, "Get", "ss")) return 0;
        sd_bus_message_read(&call, "ss", &interface, &name);
        const std::string property = name;
        const auto text = [&](const std::string& value) {
            return reply(call,
                         [&](sd_bus_message& message) { sd_bus_message_append(&message, "v", "s", value.c_str()); });
        };
        const auto integer = [&](std::int32_t value) {
            return reply(call, [&](sd_bus_message& message) { sd_bus_message_append(&message, "v", "i", value); });
        };
        if (property == "Name") return text(object.name);
        if (property == "Description") return text(object.description);
        if (property == "AccessibleId") return text(object.identifier);
        if (property == "ChildCount")
            return integer(object.childCount.value_or(static_cast<std::int32_t>(object.children.size())));
        if (property == "CharacterCount" && object.text) return integer(static_cast<std::int32_t>(object.text->size()));
        if (property == "CurrentValue" && object.number)
            return reply(call,
                         [&](sd_bus_message& message) { sd_bus_message_append(&message, "v", "d", *object.number); });
        return 0;
    }

    int answerText(sd_bus_message& call, FakeAccessible& object) {
        if (!object.text) return 0;
        if (is(call, "org.a11y.atspi.Text", "GetText", "ii")) {
            std::int32_t start = 0, end = 0;
            sd_bus_message_read(&call, "ii", &start, &end);
            if (end == -1) end = static_cast<std::int32_t>(object.text->size()); // toolkits take it for the end
            start = std::max(start, 0);
            if (end < start || end > std::ssize(*object.text))
                return fail(call, "org.freedesktop.DBus.Error.InvalidArgs", "outside of the text");
            const std::string part =
                object.text->substr(static_cast<std::size_t>(start), static_cast<std::size_t>(end - start));
            return reply(call, [&](sd_bus_message& message) { sd_bus_message_append(&message, "s", part.c_str()); });
        }
        if (is(call, "org.a11y.atspi.Text", "GetSelection", "i"))
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_append(&message, "ii", object.selection.first, object.selection.second);
            });
        if (is(call, "org.a11y.atspi.EditableText", "SetTextContents", "s")) {
            const char* text = nullptr;
            sd_bus_message_read(&call, "s", &text);
            if (object.acceptsText) object.text = text;
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_append(&message, "b", static_cast<int>(object.acceptsText));
            });
        }
        return 0;
    }

    /// Of the rule, only that it has the right type.
    int answerSearch(sd_bus_message& call, FakeAccessible& object) {
        if (!object.focused || !is(call, "org.a11y.atspi.Collection", "GetMatches", "(aiia{ss}iaiiasib)uib")) return 0;
        return reply(call, [&](sd_bus_message& message) { write(message, *object.focused); });
    }

    std::string name_;
    std::vector<std::string> calls_;
};

} // namespace vesk::test
