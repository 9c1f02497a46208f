#pragma once

#include <optional>

#include <QtCore/QSettings>

namespace larkspan {

// The user's settings: flat keys in one INI file, each written as it changes. A key may be absent, and what can't be
// read as what was asked for, a damaged file included, counts as absent. Failed writes are swallowed; the values then
// hold until the program ends. Main thread.
class SettingsStore
{
public:
    // file: the INI file, made with its folders by the first write.
    explicit SettingsStore(const QString &file = defaultFile());

    // "Larkspan/settings.ini" in the user's configuration folder.
    static QString defaultFile();

    // true, yes and 1, or false, no and 0, in any case: whoever edits the file by hand writes one of them.
    std::optional<bool> boolean(const QString &key) const;
    std::optional<QString> string(const QString &key) const;
    std::optional<QByteArray> data(const QString &key) const;

    void setBoolean(const QString &key, bool value);
    void setString(const QString &key, const QString &value);
    void setData(const QString &key, const QByteArray &value);
    void remove(const QString &key);

private:
    QSettings m_settings;
};

} // namespace larkspan
