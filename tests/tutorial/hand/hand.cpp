/*
 * Works the windows of a program as a person would, and looks what they show: Qt loads it into any program that is started with
 * QT_QPA_GENERIC_PLUGINS=hand and its folder in QT_PLUGIN_PATH.
 *
 * HAND_STEPS tells what to do, with semicolons between:
 *
 *     press TEXT      a button, switch or the like with this text, by a click
 *     up NAME, down NAME      the slider or spin box of this objectName, one step by an arrow key
 *     see TEXT        a text that is shown, now or soon
 *
 * After the last step the program is ended as by itself. A step that nothing comes of ends it with status 3.
 */

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtGui/QGenericPlugin>
#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>

#include <cstdio>

namespace
{

constexpr int pollTime = 20; // ms
constexpr int longestWait = 30000; // ms, for one step

void addItems(QQuickItem *item, QList<QQuickItem *> &items)
{
    if (!item->isVisible())
        return;
    items.append(item);
    const QList<QQuickItem *> children = item->childItems();
    for (QQuickItem *child : children)
        addItems(child, items);
}

/// All that can be seen.
QList<QQuickItem *> visibleItems()
{
    QList<QQuickItem *> items;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        if (auto *const quick = qobject_cast<QQuickWindow *>(window); quick && quick->isExposed())
            addItems(quick->contentItem(), items);
    }
    return items;
}

QString textOf(const QQuickItem *item)
{
    return item->property("text").toString();
}

void click(const QQuickItem *item)
{
    const QPointF place = item->mapToScene(QPointF(item->width() / 2, item->height() / 2));
    const QPointF global = item->window()->mapToGlobal(place.toPoint());
    QMouseEvent press(QEvent::MouseButtonPress, place, place, global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QMouseEvent release(QEvent::MouseButtonRelease, place, place, global, Qt::LeftButton, Qt::NoButton, Qt::NoModifier);
    QCoreApplication::sendEvent(item->window(), &press);
    QCoreApplication::sendEvent(item->window(), &release);
}

void strike(QQuickItem *item, int key)
{
    item->forceActiveFocus(Qt::TabFocusReason);
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier);
    QCoreApplication::sendEvent(item, &press);
    QCoreApplication::sendEvent(item, &release);
}

/// Up and down for what stands upright and for spin boxes, right and left for the rest.
bool step(QQuickItem *item, bool up)
{
    const bool isSlider = item->property("orientation").isValid();
    const bool liesDown = isSlider && item->property("orientation").toInt() == Qt::Horizontal;
    const QVariant before = item->property("value");
    if (liesDown)
        strike(item, up ? Qt::Key_Right : Qt::Key_Left);
    else
        strike(item, up ? Qt::Key_Up : Qt::Key_Down);
    return item->property("value") != before;
}

/// False where there is nothing to do it with, yet.
bool perform(const QString &action, const QString &what)
{
    const QList<QQuickItem *> items = visibleItems();
    for (QQuickItem *item : items) {
        if (action == QLatin1String("see") && textOf(item) == what)
            return true;
        if (action == QLatin1String("press") && textOf(item) == what && item->isEnabled() && item->metaObject()->indexOfSignal("clicked()") >= 0) {
            click(item);
            return true;
        }
        if ((action == QLatin1String("up") || action == QLatin1String("down")) && item->objectName() == what)
            return step(item, action == QLatin1String("up"));
    }
    return false;
}

class Hand : public QObject
{
public:
    explicit Hand(const QString &steps)
        : m_steps(steps.split(QLatin1Char(';'), Qt::SkipEmptyParts))
    {
        m_timer.setInterval(pollTime);
        connect(&m_timer, &QTimer::timeout, this, &Hand::next);
        m_timer.start();
    }

private:
    void next()
    {
        if (m_steps.isEmpty()) {
            std::fputs("hand: did all of it\n", stderr);
            m_timer.stop();
            QCoreApplication::quit();
            return;
        }
        const QString step = m_steps.first().trimmed();
        if (perform(step.section(QLatin1Char(' '), 0, 0), step.section(QLatin1Char(' '), 1))) {
            m_steps.removeFirst();
            m_waited = 0;
        } else if ((m_waited += pollTime) > longestWait) {
            std::fprintf(stderr, "hand: cannot %s. There is:\n", qPrintable(step));
            const QList<QQuickItem *> items = visibleItems();
            for (const QQuickItem *item : items) {
                if (!textOf(item).isEmpty())
                    std::fprintf(stderr, "    %s\n", qPrintable(textOf(item)));
            }
            m_timer.stop();
            QCoreApplication::exit(3);
        }
    }

    QStringList m_steps;
    QTimer m_timer;
    int m_waited = 0;
};

} // namespace

class HandPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "hand.json")

public:
    QObject *create(const QString &, const QString &) override { return new Hand(qEnvironmentVariable("HAND_STEPS")); }
};

#include "hand.moc"
