// The settings store: named values in sections. Each value keeps its kind,
// text or number, between runs: a text is not read as a number, nor a number
// as a text.
//
// Where the values live is the backend's business; the store's file keeps
// only text, so each value carries its kind in front of it, as the
// registry's own export does: "sz:" for a text, "dword:" for a number. A
// value without a kind reads as text.
#pragma once

#include <optional>
#include <string>

namespace vantrel::settings {

// Texts by key ("section/name").
class Backend {
public:
    virtual ~Backend() = default;
    // Nothing when the key holds no text.
    virtual std::optional<std::string> Read(const std::string& key) const = 0;
    virtual void Write(const std::string& key, const std::string& text) = 0;
};

// A text never saved, or saved as a number, reads as empty; a text ends at
// its first NUL.
std::string GetText(const Backend& store, const std::string& section, const std::string& name);
// Only a 32-bit number saved as a number reads as one; anything else is 0.
int GetNumber(const Backend& store, const std::string& section, const std::string& name);
void SaveText(Backend& store, const std::string& section, const std::string& name, const std::string& text);
void SaveNumber(Backend& store, const std::string& section, const std::string& name, int number);

}  // namespace vantrel::settings
