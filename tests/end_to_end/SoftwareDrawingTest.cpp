// The program on a machine whose OpenGL driver is missing.
#include <QtCore/QFile>

#include "tests/support/StartedProgram.h"
#include "tests/support/WaitUntil.h"

using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

TEST(SoftwareDrawing, IsChosenWhereOpenGLCannotBeHad)
{
    StartedProgram program(QStringLiteral(LARKSPAN_PROGRAM), "[General]\nlkBoringMode=true\n",
                           {{u"LIBGL_DRIVERS_PATH"_s, u"/no/such/folder"_s},
                            {u"__EGL_VENDOR_LIBRARY_DIRS"_s, u"/no/such/folder"_s},
                            {u"GALLIUM_DRIVER"_s, u"none"_s}}); // newer Mesa has its drivers in the library itself
    // The first window may be in sight for a moment; what is closed has to be the second.
    ASSERT_TRUE(waitUntil([&] {
        QFile arguments(u"/proc/%1/cmdline"_s.arg(program.process().processId()));
        return arguments.open(QIODevice::ReadOnly) && arguments.readAll().split('\0').contains("--software");
    }));
    ASSERT_TRUE(program.leavesItsIntro());
    ASSERT_TRUE(program.showsItsWindow());
    EXPECT_TRUE(program.isClosed());
    EXPECT_EQ(program.process().exitCode(), 0);
}
