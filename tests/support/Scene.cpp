#include "tests/support/Scene.h"

#include <gtest/gtest.h>
#include <QtQml/QQmlComponent>
#include <QtQml/QQmlExtensionPlugin>
#include <QtTest/QTest>

#include "tests/support/WaitUntil.h"

Q_IMPORT_QML_PLUGIN(Larkspan_DesignPlugin)
Q_IMPORT_QML_PLUGIN(Larkspan_ScreensPlugin)

namespace larkspan::test {

Scene::Scene(const std::string &qml, const QVariantMap &properties, QSize size)
{
    m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_window = std::make_unique<QQuickWindow>();
    m_window->resize(size);
    QQmlComponent component(&m_engine);
    component.setData(QByteArray::fromStdString(qml), QUrl(QStringLiteral("qrc:/qt/qml/Test.qml")));
    if (component.isError()) {
        ADD_FAILURE() << component.errorString().toStdString();
        return;
    }
    m_root = qobject_cast<QQuickItem *>(component.createWithInitialProperties(properties));
    if (!m_root) {
        ADD_FAILURE() << component.errorString().toStdString();
        return;
    }
    m_root->setParent(m_window.get());
    m_root->setParentItem(m_window->contentItem());
    m_window->show();
    m_window->requestActivate();
    EXPECT_TRUE(QTest::qWaitForWindowActive(m_window.get()));
}

Scene::~Scene() = default;

void Scene::click(const QString &text)
{
    const QQuickItem *item = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (item = findShown(m_window->contentItem(), text)) != nullptr; }))
        << text.toStdString();
    QTest::mouseMove(m_window.get(), middleOf(item));
    QTest::mouseClick(m_window.get(), Qt::LeftButton, {}, middleOf(item));
}

void Scene::key(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    QTest::keyClick(m_window.get(), key, modifiers);
}

void Scene::drawFrames(int count)
{
    int drawn = 0;
    QObject counter;
    QObject::connect(m_window.get(), &QQuickWindow::frameSwapped, &counter, [&] {
        ++drawn;
        m_window->update();
    });
    m_window->update();
    EXPECT_TRUE(waitUntil([&] { return drawn >= count; }));
}

} // namespace larkspan::test
