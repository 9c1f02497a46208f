#include "shell/window/WindowEngine.h"

#include <atomic>

#include <QtCore/QTimer>
#include <QtQml/QQmlIncubationController>

namespace larkspan {

// The window's own controller stops in the middle of an item when a frame is due. A list that goes then drops a control
// whose content is half made, which the engine never counts as ended: it warns of it at its own end.
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
    QTimer m_idle; // once no event waits
};

WindowEngine::WindowEngine() : m_items(std::make_unique<WholeItems>())
{
    setIncubationController(m_items.get());
}

WindowEngine::~WindowEngine() = default;

} // namespace larkspan
