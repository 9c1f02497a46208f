#include "core/settings/SettingsStore.h"

#include <QtCore/QStandardPaths>

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

SettingsStore::SettingsStore(const QString &file) : m_settings(file, QSettings::IniFormat) {}

QString SettingsStore::defaultFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u"/Larkspan/settings.ini"_s;
}

std::optional<bool> SettingsStore::boolean(const QString &key) const
{
    const QString text = string(key).value_or(QString()).trimmed().toLower();
    if (text == u"true"_s || text == u"yes"_s || text == u"1"_s) {
        return true;
    }
    if (text == u"false"_s || text == u"no"_s || text == u"0"_s) {
        return false;
    }
    return std::nullopt;
}

std::optional<QString> SettingsStore::string(const QString &key) const
{
    const QVariant value = m_settings.value(key);
    return value.typeId() == QMetaType::QString ? std::optional(value.toString()) : std::nullopt;
}

std::optional<QByteArray> SettingsStore::data(const QString &key) const
{
    const QVariant value = m_settings.value(key);
    return value.typeId() == QMetaType::QByteArray ? std::optional(value.toByteArray()) : std::nullopt;
}

void SettingsStore::setBoolean(const QString &key, bool value)
{
    setString(key, value ? u"true"_s : u"false"_s);
}

void SettingsStore::setString(const QString &key, const QString &value)
{
    m_settings.setValue(key, value);
}

void SettingsStore::setData(const QString &key, const QByteArray &value)
{
    m_settings.setValue(key, value);
}

void SettingsStore::remove(const QString &key)
{
    m_settings.remove(key);
}

} // namespace larkspan
