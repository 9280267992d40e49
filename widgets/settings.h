// The settings store of the program, kept where the platform keeps settings.
#pragma once

#include <QString>

namespace vantrel {

// The settings store: named values in sections. Each value keeps its kind,
// text or number, between runs: a text is not read as a number, nor a number
// as a text.
QString GetSettingText(const QString& section, const QString& name);
int GetSettingNumber(const QString& section, const QString& name);
void SaveSettingText(const QString& section, const QString& name, const QString& text);
void SaveSettingNumber(const QString& section, const QString& name, int number);

}  // namespace vantrel
