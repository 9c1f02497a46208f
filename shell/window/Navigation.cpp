#include "shell/window/Navigation.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

namespace {

const auto sortToolID = u"binnacle"_s;
const auto generalTab = u"General"_s;
const auto sortingTab = u"Sorting"_s;

} // namespace

Navigation::Navigation(QObject *parent) : QObject(parent), m_toolID(sortToolID), m_preferencesTab(generalTab)
{
    m_closeTimer.setSingleShot(true);
    m_closeTimer.setInterval(closingTime);
    connect(&m_closeTimer, &QTimer::timeout, this, &Navigation::finishClosing);
    connect(this, &Navigation::hasToolChanged, this, &Navigation::isSortToolOpenChanged);
    connect(this, &Navigation::toolIDChanged, this, &Navigation::isSortToolOpenChanged);
}

void Navigation::openTool(const QString &id)
{
    m_closeTimer.stop();
    changeField(*this, m_isClosing, false, &Navigation::isClosingChanged);
    changeField(*this, m_toolID, id, &Navigation::toolIDChanged);
    changeField(*this, m_hasTool, true, &Navigation::hasToolChanged);
}

void Navigation::closeTool()
{
    changeField(*this, m_isClosing, true, &Navigation::isClosingChanged);
    if (!m_closeTimer.isActive()) {
        m_closeTimer.start();
    }
}

void Navigation::finishClosing()
{
    changeField(*this, m_hasTool, false, &Navigation::hasToolChanged);
    changeField(*this, m_isClosing, false, &Navigation::isClosingChanged);
}

void Navigation::finishIntro()
{
    changeField(*this, m_isIntroOver, true, &Navigation::introEnded);
}

void Navigation::openPreferences()
{
    setPreferencesTab(isSortToolOpen() ? sortingTab : generalTab);
    showPreferences(true);
}

bool Navigation::isSortToolOpen() const
{
    return m_hasTool && m_toolID == sortToolID;
}

void Navigation::showPreferences(bool shows)
{
    changeField(*this, m_showsPreferences, shows, &Navigation::showsPreferencesChanged);
}

void Navigation::setPreferencesTab(const QString &tab)
{
    changeField(*this, m_preferencesTab, tab, &Navigation::preferencesTabChanged);
}

} // namespace larkspan
