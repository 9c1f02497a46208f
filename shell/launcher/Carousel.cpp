#include "shell/launcher/Carousel.h"

#include "shell/launcher/LKTool.h"

namespace larkspan {

namespace {

int lastIndex()
{
    return static_cast<int>(LKTool::all().size()) - 1;
}

} // namespace

void Carousel::step(int delta)
{
    show(m_app->toolIndex() + delta);
}

void Carousel::show(int index)
{
    setAnimated(true);
    if (index >= 0 && index <= lastIndex()) {
        m_app->setToolIndex(index);
    }
}

void Carousel::drag(double translation)
{
    setAnimated(false);
    const int index = m_app->toolIndex();
    const bool leadsNowhere = (translation > 0.0 && index == 0) || (translation < 0.0 && index == lastIndex());
    m_app->setDragX(leadsNowhere ? translation * beyondEnd : translation);
}

void Carousel::endDrag(double translation)
{
    const int direction = translation < -dragThreshold ? 1 : translation > dragThreshold ? -1 : 0;
    commit(direction);
}

void Carousel::cancel()
{
    commit(0);
}

void Carousel::commit(int direction)
{
    setAnimated(true);
    m_app->setDragX(0.0);
    step(direction);
}

void Carousel::setAnimated(bool animated)
{
    if (m_isAnimated != animated) {
        m_isAnimated = animated;
        Q_EMIT isAnimatedChanged();
    }
}

} // namespace larkspan
