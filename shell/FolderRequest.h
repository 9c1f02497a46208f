#pragma once

#include <functional>

#include <QtCore/QObject>
#include <QtCore/QUrl>
#include <QtQml/qqmlregistration.h>

#include "core/SortSeams.h"

namespace larkspan {

// Lets C++ ask the window for a folder: the window shows its panel when asked, and answers by choose() or not at all.
// A later request replaces one that is still open.
class FolderRequest : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one and hands it to its window.")
    Q_PROPERTY(QString prompt READ prompt NOTIFY asked)   // on the button that accepts
    Q_PROPERTY(QString message READ message NOTIFY asked) // above the list

public:
    using QObject::QObject;

    QString prompt() const { return m_panel.prompt; }
    QString message() const { return m_panel.message; }

    void ask(const FolderPanel &panel, std::function<void(FileUrl)> chosen);
    Q_INVOKABLE void choose(const QUrl &folder);

Q_SIGNALS:
    void asked();

private:
    FolderPanel m_panel;
    std::function<void(FileUrl)> m_chosen;
};

} // namespace larkspan
