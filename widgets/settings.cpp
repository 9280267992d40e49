#include "widgets/settings.h"

#include <QSettings>

#include "layout/settings_store.h"

namespace vantrel {
namespace {

// The store lives where the platform keeps the settings of "Vantrel",
// whatever the running program is called; tests point the default format's
// path elsewhere. Only a value kept as text is a value of the store.
class PlatformStore : public settings::Backend {
public:
    std::optional<std::string> Read(const std::string& key) const override {
        const QVariant value = store_.value(QString::fromStdString(key));
        if (!value.isValid() || value.typeId() != QMetaType::QString) return std::nullopt;
        return value.toString().toStdString();
    }
    void Write(const std::string& key, const std::string& text) override {
        store_.setValue(QString::fromStdString(key), QString::fromStdString(text));
    }

private:
    QSettings store_{QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("Vantrel"),
                     QStringLiteral("Vantrel")};
};

}  // namespace

QString GetSettingText(const QString& section, const QString& name) {
    return QString::fromStdString(settings::GetText(PlatformStore(), section.toStdString(), name.toStdString()));
}

int GetSettingNumber(const QString& section, const QString& name) {
    return settings::GetNumber(PlatformStore(), section.toStdString(), name.toStdString());
}

void SaveSettingText(const QString& section, const QString& name, const QString& text) {
    PlatformStore store;
    settings::SaveText(store, section.toStdString(), name.toStdString(), text.toStdString());
}

void SaveSettingNumber(const QString& section, const QString& name, int number) {
    PlatformStore store;
    settings::SaveNumber(store, section.toStdString(), name.toStdString(), number);
}

}  // namespace vantrel
