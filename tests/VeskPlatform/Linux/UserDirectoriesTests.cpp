#include "VeskPlatform/Linux/UserDirectories.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(UserDirectories, EachLineIsReadAsAShellReadsIt) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"XDG_DOCUMENTS_DIR=\"$HOME/Dokumente\"", "/h/Dokumente"},
        {"# written by a program\n  XDG_DOCUMENTS_DIR = \"/data/doc\" # mine\n", "/data/doc"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/Meine \\\"Texte\\\"\"", "/h/Meine \"Texte\""},
        {"XDG_DOCUMENTS_DIR=\"$HOME\"", "/h"},
        {"XDG_DOCUMENTS_DIR=\"$HOME/\"", "/h/"},
        {"XDG_DOCUMENTS_DIR=\"/a\"\nXDG_DOCUMENTS_DIR=\"/b\"\n", "/b"},
        {"XDG_DOCUMENTS_DIR=\"/a\"\nXDG_DOCUMENTS_DIR=\"relative\"\n", "/a"},
        {"XDG_DOCUMENTS_DIR=\"relative\"", std::nullopt},
        {"XDG_DOCUMENTS_DIR=\"$HOMEless/a\"", std::nullopt},
        {"XDG_DOCUMENTS_DIR=\"/open", std::nullopt},
        {"XDG_DOCUMENTS_DIR=\"/open\\", std::nullopt},
        {"XDG_DOCUMENTS_DIR=/bare", std::nullopt},
        {"#XDG_DOCUMENTS_DIR=\"/a\"", std::nullopt},
        {"XDG_DOCUMENTS_DIRX=\"/a\"", std::nullopt},
        {"XDG_DESKTOP_DIR=\"/a\"", std::nullopt},
        {"XDG_DOCUMENTS_DIR", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, path] : cases) EXPECT_EQ(userDirectory(text, "DOCUMENTS", "/h"), path) << text;
}

} // namespace
} // namespace vesk
