#include "VeskShellCore/NativeControlModels.hpp"
#include "tests/VeskShellCore/GoldenRecords.hpp"

namespace vesk::test {
namespace {

TEST(NativeControlModels, AnActiveAppResponse) {
    const std::string whole = R"({
  "appName" : "Editor",
  "brokerPath" : "b",
  "bundleIdentifier" : "org.example.editor",
  "bundlePath" : "p",
  "detail" : "D",
  "processIdentifier" : 7
})";
    const auto response = expectGolden<CapabilityActiveAppResponse>(whole);
    EXPECT_EQ(response.appName, "Editor");
    EXPECT_EQ(response.bundleIdentifier, "org.example.editor");
    EXPECT_EQ(response.processIdentifier, 7);
    expectRequired<CapabilityActiveAppResponse>(whole, {"brokerPath", "detail"});
    expectGolden<CapabilityActiveAppResponse>("{\n  \"brokerPath\" : \"b\",\n  \"detail\" : \"D\"\n}");
}

TEST(NativeControlModels, AProcessIdentifierHas32Bits) {
    const auto read = [](const std::string& number) {
        return fromJson<CapabilityActiveAppResponse>(
            parseJson(R"({"brokerPath":"b","detail":"D","processIdentifier":)" + number + "}"));
    };
    EXPECT_EQ(read("-2147483648").processIdentifier, -2147483648);
    EXPECT_THROW(read("2147483648"), DecodingError);
}

TEST(NativeControlModels, AFocusedElementResponse) {
    const std::string whole = R"({
  "appName" : "a",
  "brokerPath" : "b",
  "bundleIdentifier" : "c",
  "bundlePath" : "d",
  "detail" : "e",
  "editable" : true,
  "elementDescription" : "f",
  "focused" : false,
  "frameHeight" : 1.5,
  "frameWidth" : 2.5,
  "frameX" : -3.5,
  "frameY" : 4.5,
  "identifier" : "g",
  "placeholderValue" : "h",
  "processIdentifier" : 8,
  "role" : "i",
  "roleDescription" : "j",
  "selectedTextPreview" : "k",
  "subrole" : "l",
  "title" : "m",
  "valuePreview" : "n",
  "valueSettable" : true,
  "windowTitle" : "o"
})";
    const auto response = expectGolden<CapabilityFocusedElementResponse>(whole);
    EXPECT_EQ(response.frameX, -3.5);
    EXPECT_EQ(response.frameHeight, 1.5);
    EXPECT_EQ(response.elementDescription, "f");
    EXPECT_EQ(response.selectedTextPreview, "k");
    EXPECT_EQ(response.windowTitle, "o");
    expectRequired<CapabilityFocusedElementResponse>(whole, {"brokerPath", "detail"});
    expectGolden<CapabilityFocusedElementResponse>("{\n  \"brokerPath\" : \"b\",\n  \"detail\" : \"D\"\n}");
}

TEST(NativeControlModels, AControlResponse) {
    const std::string whole = R"({
  "action" : "set_value",
  "brokerPath" : "b",
  "bundlePath" : "p",
  "button" : "right",
  "detail" : "D",
  "key" : "return",
  "modifiers" : [
    "shift",
    "command"
  ],
  "normalizedX" : 0.25,
  "normalizedY" : 0.5,
  "screenX" : -10.5,
  "screenY" : 20.5,
  "textLength" : 3
})";
    const auto response = expectGolden<CapabilityControlResponse>(whole);
    EXPECT_EQ(response.action, CapabilityControlAction::setValue);
    EXPECT_EQ(response.normalizedX, 0.25);
    EXPECT_EQ(response.screenY, 20.5);
    EXPECT_EQ(response.modifiers, (std::vector{CapabilityKeyModifier::shift, CapabilityKeyModifier::command}));
    expectRequired<CapabilityControlResponse>(whole, {"brokerPath", "action", "detail"});
}

TEST(NativeControlModels, ActionsHaveTheirWords) {
    const std::pair<CapabilityControlAction, std::string_view> words[] = {
        {CapabilityControlAction::click, "click"},
        {CapabilityControlAction::type, "type"},
        {CapabilityControlAction::setValue, "set_value"},
        {CapabilityControlAction::key, "key"}};
    for (const auto& [action, word] : words) EXPECT_EQ(rawValue(action), word);
}

TEST(NativeControlModels, AnActivationResponse) {
    const std::string whole = R"({
  "activated" : true,
  "appName" : "Editor",
  "brokerPath" : "b",
  "bundleIdentifier" : "org.example.editor",
  "bundlePath" : "p",
  "detail" : "D",
  "processIdentifier" : 7,
  "requestedApp" : "edi"
})";
    EXPECT_TRUE(expectGolden<CapabilityAppActivationResponse>(whole).activated);
    expectRequired<CapabilityAppActivationResponse>(whole, {"brokerPath", "requestedApp", "activated", "detail"});
}

} // namespace
} // namespace vesk::test
