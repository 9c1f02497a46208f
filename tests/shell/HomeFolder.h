#pragma once

#include <QtCore/QByteArray>

#include "tests/support/TempFolder.h"

namespace larkspan::test {

// An empty home folder for the test; HOME names it as long as it exists.
class HomeFolder : public TempFolder
{
public:
    HomeFolder() { qputenv("HOME", QByteArray::fromStdString(path().string())); }
    ~HomeFolder() { qputenv("HOME", m_before); }
    HomeFolder(const HomeFolder &) = delete;
    HomeFolder &operator=(const HomeFolder &) = delete;

private:
    const QByteArray m_before = qgetenv("HOME");
};

} // namespace larkspan::test
