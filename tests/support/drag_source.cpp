// A small window to drag from, as a file manager or a browser has: drag_source FILE-OR-ADDRESS… | --text TEXT
// Says on standard output where to take hold, and ends with the drag: 0 if the drop was taken, 1 if not.
#include <cstdio>

#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QDrag>
#include <QtGui/QGuiApplication>
#include <QtGui/QPainter>
#include <QtGui/QRasterWindow>

namespace {

class DragSource : public QRasterWindow
{
public:
    explicit DragSource(const QStringList &arguments)
    {
        if (arguments.value(0) == QStringLiteral("--text")) {
            m_text = arguments.value(1);
            return;
        }
        for (const QString &argument : arguments) {
            const bool isAddress = argument.contains(QStringLiteral("://"));
            m_urls.push_back(isAddress ? QUrl(argument) : QUrl::fromLocalFile(argument));
        }
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QPainter painter(this);
        painter.fillRect(QRect(QPoint(), size()), Qt::darkGray);
        painter.setPen(Qt::white);
        painter.drawText(QRect(QPoint(), size()), Qt::AlignCenter, m_urls.value(0).fileName() + m_text);
        if (!m_said) {
            m_said = true;
            // The window manager may still move it; what counts is where it is when things are quiet.
            QTimer::singleShot(300, this, [this] {
                const QPoint middle = mapToGlobal(QPoint(width() / 2, height() / 2));
                std::printf("%d %d\n", middle.x(), middle.y());
                std::fflush(stdout);
            });
        }
    }

    void mouseMoveEvent(QMouseEvent *) override
    {
        if (m_dragged || !(QGuiApplication::mouseButtons() & Qt::LeftButton)) {
            return;
        }
        m_dragged = true;
        auto *drag = new QDrag(this);
        auto *content = new QMimeData;
        if (m_urls.isEmpty()) {
            content->setText(m_text);
        } else {
            content->setUrls(m_urls);
        }
        drag->setMimeData(content);
        // The other program asks for the content after the drop; the drag goes when it has said that it is done.
        connect(drag, &QObject::destroyed, this, [this] { QCoreApplication::exit(m_taken ? 0 : 1); });
        m_taken = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::CopyAction) != Qt::IgnoreAction;
    }

private:
    QList<QUrl> m_urls;
    QString m_text; // instead of them
    bool m_said = false;
    bool m_dragged = false;
    bool m_taken = false;
};

} // namespace

int main(int argc, char **argv)
{
    QGuiApplication application(argc, argv);
    DragSource window(QGuiApplication::arguments().mid(1));
    window.setFlags(Qt::Window | Qt::WindowDoesNotAcceptFocus);
    window.setTitle(QStringLiteral("Files"));
    window.setGeometry(20, 900, 160, 60);
    window.show();
    return QGuiApplication::exec();
}
