// The main of tests that show something. Whatever Qt or QML warns of during a test fails it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <QtGui/QGuiApplication>

namespace {

void failOnWarning(QtMsgType type, const QMessageLogContext &, const QString &message)
{
    if (type == QtDebugMsg || type == QtInfoMsg) {
        return;
    }
    // The display's lacks are no fault of ours, nor that Qt's render loop stops its clock twice when a window goes
    // while something in it still moves, nor that newer Qt looks at a window's scale for its exposure before it tells
    // the window of a new one.
    static const QStringList ofTheDisplay{QStringLiteral("propagateSizeHints"), QStringLiteral("XDG_RUNTIME_DIR"),
                                          QStringLiteral("qt.qpa."),
                                          QStringLiteral("QUnifiedTimer::stopAnimationDriver"),
                                          QStringLiteral("cached device pixel ratio value was stale")};
    for (const QString &harmless : ofTheDisplay) {
        if (message.contains(harmless)) {
            return;
        }
    }
    ADD_FAILURE() << message.toStdString();
}

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    QGuiApplication::setOrganizationName(QStringLiteral("Larkspan"));
    QGuiApplication::setApplicationName(QStringLiteral("Larkspan tests"));
    testing::InitGoogleMock(&argc, argv);
    qInstallMessageHandler(failOnWarning);
    const int result = RUN_ALL_TESTS();
    qInstallMessageHandler(nullptr);
    return result;
}
