#pragma once

#include "VeskPlatform/BundleInformation.hpp"

namespace vesk {

class FileReader;

/// Property lists in files: `Contents/Info.plist` and `Contents/entitlements.plist` of a bundle (a folder named
/// `….app`), and the section `.vesk.entitlements` of an ELF file. A bare executable's folder has neither list.
class PropertyListBundleInformation : public BundleInformation {
public:
    explicit PropertyListBundleInformation(FileReader& files) : files_(files) {}

    JsonValue::Object informationDictionary(const Bundle& bundle) override;
    JsonValue::Object entitlements(const std::string& path) override;

private:
    JsonValue::Object dictionaryIn(const std::string& path);

    FileReader& files_;
};

} // namespace vesk
