#include "shell/preferences/PreferencesTabs.h"

using namespace Qt::Literals::StringLiterals;

namespace larkspan {

QStringList PreferencesTabs::names()
{
    return {u"General"_s, u"Account"_s, u"Sorting"_s, u"Import"_s};
}

QString PreferencesTabs::current() const
{
    return names().contains(m_wanted) ? m_wanted : names().constFirst();
}

QString PreferencesTabs::title() const
{
    return m_isForSortTool ? tr("Binnacle Preferences") : tr("Larkspan Preferences");
}

QString PreferencesTabs::scope() const
{
    return m_isForSortTool ? tr("Changes apply to the next sort.") : tr("Settings apply across every tool.");
}

} // namespace larkspan
