#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"
#include "VeskPlatform/Linux/Accessibility/AtspiTree.hpp"
#include "tests/contracts/AccessibilityTreeContract.hpp"
#include "tests/fakes/FakeAccessibility.hpp"
#include "tests/fakes/FakeAccessibleApplication.hpp"
#include "tests/support/PrivateBus.hpp"

#include <memory>
#include <unistd.h>

namespace vesk::test {
namespace {

class FakeWorld {
public:
    FakeWorld() { tree_.applications[process()] = elementWith({window_}); }

    AccessibilityTree& tree() { return tree_; }
    static std::int32_t process() { return 42; }
    void addField(const std::string& title) {
        fields_.push_back(fakeElement());
        fields_.back()->withText("AXTitle", title).withSettable("AXValue");
        window_->with("AXChildren", elementsValue(fields_));
    }
    void refuseValues() { tree_.accepts = false; }

private:
    static FakeElementHandle elementWith(const std::vector<FakeElementHandle>& children) {
        FakeElementHandle element = fakeElement();
        element->with("AXChildren", elementsValue(children));
        return element;
    }

    FakeElementHandle window_ = fakeElement();
    std::vector<FakeElementHandle> fields_;
    FakeAccessibilityTree tree_;
};

class AtspiWorld {
public:
    AtspiWorld() {
        registry_.objects[root].children.emplace_back(application_.name(), root);
        application_.add(root, "/window", ATSPI_ROLE_FRAME, {ATSPI_STATE_ACTIVE});
        application_.serveAt(bus_.address());
        registry_.serveAt(bus_.address());
        tree_ = std::make_unique<AtspiTree>(bus_.address(), nullptr);
    }

    AccessibilityTree& tree() { return *tree_; }
    static std::int32_t process() { return ::getpid(); }
    void addField(const std::string& title) {
        application_.change([&] {
            FakeAccessible& field = application_.add("/window", "/" + title, ATSPI_ROLE_ENTRY, {ATSPI_STATE_EDITABLE});
            field.name = title;
            field.text = "";
            field.interfaces = {atspi::text, atspi::editableText};
        });
    }
    void refuseValues() {
        application_.change([this] {
            for (auto& [path, object] : application_.objects) object.acceptsText = false;
        });
    }

private:
    static constexpr const char* root = FakeAccessibleApplication::root;

    PrivateBus bus_;
    FakeAccessibleApplication registry_{"org.a11y.atspi.Registry"}, application_{"org.example.Application"};
    std::unique_ptr<AtspiTree> tree_;
};

using Worlds = ::testing::Types<FakeWorld, AtspiWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, AccessibilityTreeContract, Worlds);

} // namespace
} // namespace vesk::test
