#include "shell/window/WindowEngine.h"

#include <atomic>

#include <QtCore/QTimer>
#include <QtQml/QQmlIncubationController>

namespace larkspan {

// Creates each item of a list in one go. The window's own controller may stop within an item when a frame is due; if
// the list is destroyed then, the engine warns at exit of an unfinished item.
class WindowEngine::WholeItems : public QQmlIncubationController
{
public:
    WholeItems()
    {
        m_idle.setSingleShot(true);
        m_idle.callOnTimeout([this] {
            std::atomic<bool> goesOn = true;
            incubateWhile(&goesOn);
        });
    }

protected:
    void incubatingObjectCountChanged(int count) override
    {
        if (count > 0 && !m_idle.isActive()) {
            m_idle.start();
        }
    }

private:
    QTimer m_idle; // fires when no event is waiting
};

WindowEngine::WindowEngine() : m_items(std::make_unique<WholeItems>())
{
    setIncubationController(m_items.get());
}

WindowEngine::~WindowEngine() = default;

} // namespace larkspan
