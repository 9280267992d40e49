#include "layout/settings_store.h"

#include <charconv>
#include <cstdint>
#include <string_view>

namespace vantrel::settings {
namespace {

constexpr std::string_view kTextKind = "sz:";
constexpr std::string_view kNumberKind = "dword:";

std::string Key(const std::string& section, const std::string& name) { return section + '/' + name; }

bool StartsWith(const std::string& text, std::string_view prefix) { return text.starts_with(prefix); }

// A whole number in decimal, blanks around it and a sign allowed.
std::optional<long long> ParseNumber(std::string_view text) {
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty() || text.front() == '+') return std::nullopt;
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    return number;
}

}  // namespace

std::string GetText(const Backend& store, const std::string& section, const std::string& name) {
    std::string text = store.Read(Key(section, name)).value_or(std::string());
    if (StartsWith(text, kNumberKind)) return std::string();
    if (StartsWith(text, kTextKind)) text.erase(0, kTextKind.size());
    if (const std::size_t nul = text.find('\0'); nul != std::string::npos) text.resize(nul);
    return text;
}

int GetNumber(const Backend& store, const std::string& section, const std::string& name) {
    const std::string text = store.Read(Key(section, name)).value_or(std::string());
    if (!StartsWith(text, kNumberKind)) return 0;
    const std::optional<long long> number = ParseNumber(std::string_view(text).substr(kNumberKind.size()));
    if (!number || *number < INT32_MIN || *number > INT32_MAX) return 0;
    return static_cast<int>(*number);
}

void SaveText(Backend& store, const std::string& section, const std::string& name, const std::string& text) {
    store.Write(Key(section, name), std::string(kTextKind) + text);
}

void SaveNumber(Backend& store, const std::string& section, const std::string& name, int number) {
    store.Write(Key(section, name), std::string(kNumberKind) + std::to_string(number));
}

}  // namespace vantrel::settings
