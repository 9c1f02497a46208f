#include "design/LKAccessible.h"

#include "tests/design/Controls.h"

using namespace larkspan;
using namespace larkspan::test;
using namespace Qt::Literals::StringLiterals;

namespace {

class LKAccessibleTest : public testing::Test
{
protected:
    ~LKAccessibleTest() override { QAccessible::setActive(false); }

    static void startScreenReader() { QAccessible::setActive(true); }

    static std::string page(const std::string &body) { return "import QtQuick.Templates as T\n" + document(body); }
};

} // namespace

TEST_F(LKAccessibleTest, AControlIsToldAsWhatItIsAndNotAsWhatItsTemplateIs)
{
    Scene scene(page("T.AbstractButton { objectName: 'tab'; Accessible.name: 'Sorting'; text: 'other'\n"
                     "LKAccessible.role: Accessible.PageTab }"));
    QQuickItem *tab = findNamed(scene.root(), u"tab"_s);
    startScreenReader();
    EXPECT_EQ(accessible(tab)->role(), QAccessible::PageTab);
    EXPECT_EQ(accessibleName(tab), u"Sorting"_s);
    QAccessible::setActive(false);
    startScreenReader(); // another one
    EXPECT_EQ(accessible(tab)->role(), QAccessible::PageTab);
}

TEST_F(LKAccessibleTest, WhatIsDisabledAndWhatIsOpenIsTold)
{
    Scene scene(page("T.AbstractButton { objectName: 'opener'; Accessible.name: 'More'; property bool isOpen: false\n"
                     "LKAccessible.expanded: isOpen }"));
    QQuickItem *opener = findNamed(scene.root(), u"opener"_s);
    startScreenReader();
    EXPECT_TRUE(accessible(opener)->state().expandable);
    EXPECT_TRUE(accessible(opener)->state().collapsed);
    EXPECT_FALSE(accessible(opener)->state().disabled);
    opener->setProperty("isOpen", true);
    opener->setEnabled(false);
    EXPECT_TRUE(accessible(opener)->state().expanded);
    EXPECT_FALSE(accessible(opener)->state().collapsed);
    EXPECT_TRUE(accessible(opener)->state().disabled);
}

TEST_F(LKAccessibleTest, AControlThatOpensNothingIsNeitherOpenNorClosed)
{
    Scene scene(page("LKButton { objectName: 'button'; title: 'Go' }"));
    const QAccessible::State state = accessible(findNamed(scene.root(), u"button"_s))->state();
    EXPECT_FALSE(state.expandable || state.expanded || state.collapsed);
}

TEST_F(LKAccessibleTest, AButtonOffersItsPressOnce)
{
    Scene scene(page("LKButton { objectName: 'button'; title: 'Go' }"));
    const QStringList names = accessible(findNamed(scene.root(), u"button"_s))->actionInterface()->actionNames();
    EXPECT_EQ(names.count(QAccessibleActionInterface::pressAction()), 1);
}

TEST_F(LKAccessibleTest, APopupHasANameAndMayBeOfAnotherRole)
{
    Scene scene(page("LKPopover { LKAccessible.name: 'Projects'; LKAccessible.role: Accessible.Pane; visible: true\n"
                     "Item { objectName: 'content'; implicitWidth: 10; implicitHeight: 10 } }"));
    QQuickItem *content = findNamed(scene.window().contentItem(), u"content"_s);
    ASSERT_NE(content, nullptr);
    startScreenReader();
    QAccessibleInterface *popup = accessible(content);
    while (popup == nullptr || popup->text(QAccessible::Name) != u"Projects"_s) {
        content = content->parentItem();
        ASSERT_NE(content, nullptr);
        popup = accessible(content);
    }
    EXPECT_EQ(popup->role(), QAccessible::Pane);
}
