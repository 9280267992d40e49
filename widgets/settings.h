// The settings store (layout/settings_store.h) kept where the platform keeps
// the settings of "Vantrel".
#pragma once

#include <QString>

namespace vantrel {

// Named values in sections; each keeps its kind, text or number, between
// runs.
QString GetSettingText(const QString& section, const QString& name);
int GetSettingNumber(const QString& section, const QString& name);
void SaveSettingText(const QString& section, const QString& name, const QString& text);
void SaveSettingNumber(const QString& section, const QString& name, int number);

}  // namespace vantrel
