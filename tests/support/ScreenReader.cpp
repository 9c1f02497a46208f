#include "tests/support/ScreenReader.h"

#include <QtGui/private/qguiapplication_p.h>
#include <QtGui/qpa/qplatformaccessibility.h>
#include <QtGui/qpa/qplatformintegration.h>

namespace larkspan::test {

namespace {

void setActive(bool active)
{
    QGuiApplicationPrivate::platformIntegration()->accessibility()->setActive(active);
}

} // namespace

ScreenReader::ScreenReader()
{
    setActive(true);
}

ScreenReader::~ScreenReader()
{
    setActive(false);
}

} // namespace larkspan::test
