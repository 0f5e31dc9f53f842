#pragma once

#import <Foundation/Foundation.h>

#include <string>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {

/// Copies through NSFileManager. The contract is that of FileManager::copyItem.
void copyTree(const std::string& path, const std::string& destination);

/// Whether a link stands at the path itself.
bool isLink(NSString* path);

/// Whether both paths name one thing, a link for itself.
bool isSameItem(const std::string& path, const std::string& other);

/// Whether what `item` is or leads to is `folder`, which is no link, or lies anywhere in it. Not where one of them is
/// not there. Told by what things are and not by their names: a folder may hold other volumes, and `folder` may be a
/// file.
bool isOrContains(const std::string& folder, const std::string& item);

} // namespace vesk

NS_ASSUME_NONNULL_END
