#pragma once

// The names of AT-SPI's objects and interfaces on the bus.

namespace vesk::atspi {

constexpr const char* rootPath = "/org/a11y/atspi/accessible/root";
/// In the place of an element that there is not.
constexpr const char* nullPath = "/org/a11y/atspi/null";
constexpr const char* registryService = "org.a11y.atspi.Registry";

constexpr const char* accessible = "org.a11y.atspi.Accessible";
constexpr const char* collection = "org.a11y.atspi.Collection";
constexpr const char* component = "org.a11y.atspi.Component";
constexpr const char* editableText = "org.a11y.atspi.EditableText";
constexpr const char* text = "org.a11y.atspi.Text";
constexpr const char* value = "org.a11y.atspi.Value";

} // namespace vesk::atspi
