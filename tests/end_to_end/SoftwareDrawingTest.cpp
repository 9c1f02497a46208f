// The program on a machine whose OpenGL driver is missing.
#include <QtCore/QFile>

#include "tests/support/StartedProgram.h"

using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST(SoftwareDrawing, IsChosenWhereOpenGLCannotBeHad)
{
    StartedProgram program(
        QStringLiteral(LARKSPAN_PROGRAM), "[General]\nlkBoringMode=true\n",
        {{u"LIBGL_DRIVERS_PATH"_s, u"/no/such/folder"_s}, {u"__EGL_VENDOR_LIBRARY_DIRS"_s, u"/no/such/folder"_s}});
    ASSERT_TRUE(program.showsItsWindow());
    ASSERT_TRUE(program.leavesItsIntro());
    QFile arguments(u"/proc/%1/cmdline"_s.arg(program.process().processId()));
    ASSERT_TRUE(arguments.open(QIODevice::ReadOnly));
    EXPECT_TRUE(arguments.readAll().split('\0').contains("--software"));
    EXPECT_TRUE(program.isClosed());
    EXPECT_EQ(program.process().exitCode(), 0);
}
