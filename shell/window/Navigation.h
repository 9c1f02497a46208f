#pragma once

#include <chrono>

#include <QtCore/QObject>
#include <QtCore/QTimer>

#include "shell/window/FieldChange.h"

namespace larkspan {

// The place in the program: intro or program, launcher or tool, the carousel's position, and the Preferences sheet.
// Main thread.
class Navigation : public QObject
{
    Q_OBJECT

public:
    // The time in which a tool's screen disappears, before the launcher takes its place.
    static constexpr std::chrono::milliseconds closingTime{270};

    explicit Navigation(QObject *parent = nullptr);

    // Shows a tool from its start, even one that is just closing.
    void openTool(const QString &id);
    void closeTool();
    // The intro ends once, for good.
    void finishIntro();
    // Opens the sheet on the settings that matter for the current screen.
    void openPreferences();

    [[nodiscard]] bool isIntroOver() const { return m_isIntroOver; }
    [[nodiscard]] bool hasTool() const { return m_hasTool; }
    // The open tool, or the one that was open last.
    [[nodiscard]] const QString &toolID() const { return m_toolID; }
    [[nodiscard]] bool isSortToolOpen() const;
    // Returns true while the tool's screen is disappearing.
    [[nodiscard]] bool isClosing() const { return m_isClosing; }
    [[nodiscard]] int toolIndex() const { return m_toolIndex; }
    void setToolIndex(int index) { changeField(*this, m_toolIndex, index, &Navigation::toolIndexChanged); }
    // The distance, in points, that the carousel is dragged from its position.
    [[nodiscard]] double dragX() const { return m_dragX; }
    void setDragX(double offset) { changeField(*this, m_dragX, offset, &Navigation::dragXChanged); }
    [[nodiscard]] bool showsPreferences() const { return m_showsPreferences; }
    void showPreferences(bool shows);
    [[nodiscard]] const QString &preferencesTab() const { return m_preferencesTab; }
    void setPreferencesTab(const QString &tab);

Q_SIGNALS:
    void introEnded();
    void hasToolChanged();
    void toolIDChanged();
    void isSortToolOpenChanged();
    void isClosingChanged();
    void toolIndexChanged();
    void dragXChanged();
    void showsPreferencesChanged();
    void preferencesTabChanged();

private:
    void finishClosing();

    bool m_isIntroOver = false;
    bool m_hasTool = false;
    QString m_toolID;
    bool m_isClosing = false;
    int m_toolIndex = 0;
    double m_dragX = 0.0;
    bool m_showsPreferences = false;
    QString m_preferencesTab;
    QTimer m_closeTimer{this};
};

} // namespace larkspan
