#include "widgets/settings.h"

#include <QSettings>
#include <cstdint>

namespace vantrel {

namespace {

// The store lives where the platform keeps the settings of "Vantrel",
// whatever the running program is called; tests point the default format's
// path elsewhere.
QSettings OpenStore() {
    return QSettings(QSettings::defaultFormat(), QSettings::UserScope, QStringLiteral("Vantrel"),
                     QStringLiteral("Vantrel"));
}

QString Key(const QString& section, const QString& name) { return section + QLatin1Char('/') + name; }

// The store's file keeps only text, so each value carries its kind in front
// of it, as the registry's own export does: "sz:" for a text, "dword:" for a
// number. A value without a kind reads as text.
const QString kTextKind = QStringLiteral("sz:");
const QString kNumberKind = QStringLiteral("dword:");

QString StoredText(const QString& section, const QString& name) {
    const QVariant value = OpenStore().value(Key(section, name));
    return value.isValid() && value.typeId() == QMetaType::QString ? value.toString() : QString();
}

}  // namespace

QString GetSettingText(const QString& section, const QString& name) {
    QString text = StoredText(section, name);
    if (text.startsWith(kNumberKind)) return QString();
    if (text.startsWith(kTextKind)) text.remove(0, kTextKind.size());
    const qsizetype nul = text.indexOf(QChar(0));
    if (nul >= 0) text.truncate(nul);
    return text;
}

int GetSettingNumber(const QString& section, const QString& name) {
    const QString text = StoredText(section, name);
    if (!text.startsWith(kNumberKind)) return 0;
    bool ok = false;
    const qlonglong number = text.mid(kNumberKind.size()).toLongLong(&ok);
    // Only a 32-bit value is a number of the store.
    if (!ok || number < INT32_MIN || number > INT32_MAX) return 0;
    return static_cast<int>(number);
}

void SaveSettingText(const QString& section, const QString& name, const QString& text) {
    OpenStore().setValue(Key(section, name), kTextKind + text);
}

void SaveSettingNumber(const QString& section, const QString& name, int number) {
    OpenStore().setValue(Key(section, name), kNumberKind + QString::number(number));
}

}  // namespace vantrel
