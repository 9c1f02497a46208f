#pragma once

#include <memory>

#include <QtQml/QQmlApplicationEngine>

namespace larkspan {

// The QML engine of the program's window. Its lists make what will soon be in sight between two frames, an item at a
// time and each to its end. Main thread.
class WindowEngine : public QQmlApplicationEngine
{
    Q_OBJECT

public:
    WindowEngine();
    ~WindowEngine() override;

private:
    class WholeItems;
    std::unique_ptr<WholeItems> m_items;
};

} // namespace larkspan
