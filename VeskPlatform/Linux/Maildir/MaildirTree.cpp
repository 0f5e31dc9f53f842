#include "VeskPlatform/Linux/Maildir/MaildirTree.hpp"

#include "VeskPlatform/Linux/DirectoryStream.hpp"
#include "VeskPlatform/Linux/OpenFailure.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <set>
#include <string_view>
#include <sys/stat.h>
#include <utility>

namespace vesk::maildir {
namespace {

constexpr const char* inboxName = "INBOX";
/// Mail programs nest folders a few levels deep.
constexpr int deepest = 16;

/// A folder of the tree; `children` without the parts of a Maildir folder.
struct Node {
    std::string path, name;
    bool isMaildir = false;
    std::vector<Node> children;

    bool holdsMail() const { return isMaildir || std::ranges::any_of(children, &Node::holdsMail); }
    /// IMAP knows the inbox by its name in any case (RFC 9051, section 5.1).
    const Node* inboxChild() const {
        const auto found = std::ranges::find_if(
            children, [](const Node& child) { return child.isMaildir && lowercased(child.name) == "inbox"; });
        return found == children.end() ? nullptr : &*found;
    }
};

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string lastComponent(const std::string& path) {
    const std::size_t end = path.find_last_not_of('/');
    const std::string kept = path.substr(0, end + 1);
    return kept.substr(kept.rfind('/') + 1);
}

class TreeWalk {
public:
    using Unreadable = std::function<void(const std::string&, int)>;
    TreeWalk(const Unreadable& unreadable, const std::function<void()>& visiting)
        : unreadable_(unreadable), visiting_(visiting) {}

    /// None where a folder was met before, or cannot be read.
    std::optional<Node> visit(const std::string& path, const std::string& name, int depth) {
        visiting_();
        struct stat status {};
        if (::stat(path.c_str(), &status) != 0 || !visited_.insert({status.st_dev, status.st_ino}).second)
            return std::nullopt;
        Node node{path, name, isFolder(path + "/cur") && isFolder(path + "/new"), {}};
        const auto entries = entriesOf(path, node.isMaildir);
        if (!entries) return std::nullopt;
        if (depth < deepest)
            for (const std::string& child : *entries) addChild(node, child, depth);
        return node;
    }

private:
    void addChild(Node& parent, const std::string& name, int depth) {
        const std::string path = parent.path + "/" + name;
        // A hidden folder is mail's own only where it is a Maildir folder.
        if (name.starts_with('.') && !(isFolder(path + "/cur") && isFolder(path + "/new"))) return;
        if (auto child = visit(path, name, depth + 1)) parent.children.push_back(std::move(*child));
    }

    /// The names of folders, links last: a folder goes by its own name rather than by a link's.
    std::optional<std::vector<std::string>> entriesOf(const std::string& path, bool isMaildir) const {
        const DirectoryStream directory = openDirectory(path);
        if (directory == nullptr) {
            if (isShortage(errno)) throwOpenFailure(errno, path);
            if (errno != ENOENT) unreadable_(path, errno);
            return std::nullopt;
        }
        std::vector<std::pair<bool, std::string>> found;
        while (const dirent* entry = ::readdir(directory.get())) {
            const std::string name = entry->d_name;
            if (entry->d_type == DT_REG || name == "." || name == "..") continue;
            if (isMaildir && (name == "cur" || name == "new" || name == "tmp")) continue;
            if (isFolder(path + "/" + name)) found.emplace_back(entry->d_type == DT_LNK, name);
        }
        std::ranges::sort(found);
        std::vector<std::string> names;
        for (auto& [isLink, name] : found) names.push_back(std::move(name));
        return names;
    }

    const Unreadable& unreadable_;
    const std::function<void()>& visiting_;
    std::set<std::pair<dev_t, ino_t>> visited_;
};

/// The name of a folder below another: what begins with a dot is a path of its own, with dots in it.
std::string nameBelow(const std::string& parent, std::string name) {
    if (name.starts_with('.')) {
        name.erase(0, 1);
        std::ranges::replace(name, '.', '/');
    }
    return repairedUtf8(parent.empty() ? name : parent + "/" + name);
}

class FolderList {
public:
    void addAccount(const Node& top, const std::set<const Node*>& others) {
        account_ = repairedUtf8(top.name);
        const Node* inbox = top.inboxChild();
        if (inbox == nullptr && top.isMaildir) inbox = &top;
        if (inbox != nullptr) add(*inbox, inboxName, true);
        if (top.isMaildir && inbox != &top) add(top, account_, false);
        addBelow(top, "", inbox, others);
    }
    std::vector<MailFolder> take() { return std::move(folders_); }

private:
    void add(const Node& node, const std::string& name, bool isInbox) {
        folders_.push_back({node.path, account_, name, isInbox});
    }
    void addBelow(const Node& node, const std::string& name, const Node* inbox, const std::set<const Node*>& others) {
        for (const Node& child : node.children) {
            if (others.contains(&child)) continue;
            const std::string childName = nameBelow(name, child.name);
            if (child.isMaildir && &child != inbox) add(child, childName, false);
            addBelow(child, childName, inbox, others);
        }
    }

    std::string account_;
    std::vector<MailFolder> folders_;
};

bool isAccount(const Node& root) {
    const auto isDotted = [](const Node& child) { return child.name.starts_with('.') && child.isMaildir; };
    return root.isMaildir || root.inboxChild() != nullptr || std::ranges::any_of(root.children, isDotted);
}

} // namespace

std::vector<MailFolder> findMailFolders(const std::string& root,
                                        const std::function<void(const std::string& path, int errnoValue)>& unreadable,
                                        const std::function<void()>& visiting) {
    std::optional<int> rootFailure;
    const auto heard = [&](const std::string& path, int errnoValue) {
        if (path == root)
            rootFailure = errnoValue;
        else
            unreadable(path, errnoValue);
    };
    const std::function<void(const std::string&, int)> report = heard;
    const auto top = TreeWalk(report, visiting).visit(root, lastComponent(root), 0);
    if (!top) throw PosixError(rootFailure.value_or(ENOENT), root);
    const bool rootIsAccount = isAccount(*top);
    std::set<const Node*> accounts;
    for (const Node& child : top->children) {
        const bool own = rootIsAccount ? child.inboxChild() != nullptr && child.name != inboxName : child.holdsMail();
        if (own && !child.name.starts_with('.')) accounts.insert(&child);
    }
    FolderList list;
    if (rootIsAccount) list.addAccount(*top, accounts);
    for (const Node& child : top->children)
        if (accounts.contains(&child)) list.addAccount(child, {});
    return list.take();
}

} // namespace vesk::maildir
