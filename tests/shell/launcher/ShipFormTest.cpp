#include "shell/launcher/ShipForm.h"

#include <gmock/gmock.h>

using namespace larkspan;
using namespace Qt::Literals::StringLiterals;

TEST(ShipForm, OffersAsksAndIsDone)
{
    ShipForm form;
    EXPECT_TRUE(form.offers());
    EXPECT_FALSE(form.asks());
    form.setOpen(true);
    EXPECT_FALSE(form.offers());
    EXPECT_TRUE(form.asks());
    form.setEmail(u"a@b.c"_s);
    form.send();
    EXPECT_TRUE(form.isSent());
    EXPECT_FALSE(form.offers());
    EXPECT_FALSE(form.asks());
    EXPECT_EQ(form.email(), u"a@b.c"_s) << "the thanks name it";
}

TEST(ShipForm, BlanksAreNoAddress)
{
    ShipForm form;
    form.setOpen(true);
    for (const QString &email : {QString(), u"  \t"_s}) {
        form.setEmail(email);
        EXPECT_FALSE(form.canSend());
        form.send();
        EXPECT_FALSE(form.isSent());
    }
    form.setEmail(u" a@b.c"_s);
    EXPECT_TRUE(form.canSend());
}

TEST(ShipForm, ClearingItEmptiesItForTheNextPage)
{
    ShipForm form;
    form.setOpen(true);
    form.setEmail(u"a@b.c"_s);
    form.setSent(true);
    form.clear();
    EXPECT_TRUE(form.offers());
    EXPECT_EQ(form.email(), QString());
    EXPECT_FALSE(form.isSent());
}

TEST(ShipForm, TellsOfEachChangeOnce)
{
    ShipForm form;
    int changes = 0;
    QObject::connect(&form, &ShipForm::changed, [&changes] { ++changes; });
    form.setOpen(true);
    form.setOpen(true);
    form.setEmail(u"a"_s);
    form.setSent(true);
    EXPECT_EQ(changes, 3);
}
