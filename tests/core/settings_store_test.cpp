// The settings store's values: each keeps its kind, text or number.
#include <gtest/gtest.h>

#include <map>
#include <tuple>

#include "layout/settings_store.h"

using namespace vantrel::settings;

namespace {

struct MemoryStore : Backend {
    std::optional<std::string> Read(const std::string& key) const override {
        const auto found = texts.find(key);
        return found == texts.end() ? std::nullopt : std::optional(found->second);
    }
    void Write(const std::string& key, const std::string& text) override { texts[key] = text; }
    std::map<std::string, std::string> texts;
};

}  // namespace

TEST(SettingsStore, EachValueKeepsItsKindAndAnythingElseReadsAsTheDefault) {
    MemoryStore store;
    SaveNumber(store, "Forms", "Number", -1234567);
    SaveText(store, "Forms", "Digits", "34");
    SaveText(store, "Forms", "Nul", std::string("ab\0cd", 5));
    store.texts.insert({{"Forms/Huge", "dword:4294967303"}, {"Forms/Plain", "as typed"}, {"Forms/Junk", "dword:12x"}});
    EXPECT_EQ(std::tuple(store.texts.at("Forms/Number"), store.texts.at("Forms/Digits")),
              std::tuple("dword:-1234567", "sz:34")) << "the kind goes in front, as the registry's export";
    EXPECT_EQ(std::tuple(GetNumber(store, "Forms", "Number"), GetNumber(store, "Forms", "Digits"),
                         GetNumber(store, "Forms", "Huge"), GetNumber(store, "Forms", "Junk")),
              std::tuple(-1234567, 0, 0, 0)) << "only a 32-bit value saved as a number is a number";
    EXPECT_EQ(std::tuple(GetText(store, "Forms", "Number"), GetText(store, "Forms", "Digits"),
                         GetText(store, "Forms", "Nul"), GetText(store, "Forms", "Plain")),
              std::tuple("", "34", "ab", "as typed")) << "a text ends at its first NUL; without a kind it is text";
    EXPECT_EQ(std::tuple(GetText(store, "None", "Nothing"), GetNumber(store, "Forms", "Nothing")), std::tuple("", 0));
}
