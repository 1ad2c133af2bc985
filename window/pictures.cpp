// Draws pictures of the window's rooms, with a car that has something to show in each; tools/window-pictures starts it.

#include "desk.h"
#include "windowtypes.h"

#include <QtCore/QDir>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QStringList>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QImage>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickItem>
#include <QtQuick/QQuickWindow>
#include <QtQuickControls2/QQuickStyle>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace
{

constexpr int patience = 60000; // ms
/// For what moves into its place, such as a ripple or a scroll bar that fades.
constexpr int rest = 700; // ms

constexpr const char *looks[] = {"light", "dark"};
constexpr QSize sizes[] = {{1024, 600}, {1920, 1080}};

void settle(int milliseconds)
{
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

template<typename Condition>
bool waitFor(const Condition &condition)
{
    constexpr int turn = 20; // ms
    for (int waited = 0; !condition(); waited += turn) {
        if (waited > patience)
            return false;
        settle(turn);
    }
    return true;
}

/// What a repeater made has parents among the items only.
const QQuickItem *findItem(const QQuickItem &root, const QString &name)
{
    if (root.objectName() == name)
        return &root;
    const QList<QQuickItem *> children = root.childItems();
    for (const QQuickItem *child : children) {
        if (const QQuickItem *const found = findItem(*child, name))
            return found;
    }
    return nullptr;
}

int distance(QRgb a, QRgb b)
{
    return qAbs(qRed(a) - qRed(b)) + qAbs(qGreen(a) - qGreen(b)) + qAbs(qBlue(a) - qBlue(b));
}

/// A palette for a picture that has more colours: those that there are most of, then those that the palette has least alike.
QVector<QRgb> paletteOf(const QHash<QRgb, int> &counts)
{
    constexpr int most = 256;
    constexpr int frequent = 64;
    struct Colour
    {
        QRgb value;
        double count;
        int error; // distance to the nearest one of the palette
    };
    std::vector<Colour> colours;
    for (auto colour = counts.begin(); colour != counts.end(); ++colour)
        colours.push_back({colour.key(), std::sqrt(colour.value()), 3 * most});
    // Equally frequent ones have an order, too: the same picture gives the same file.
    std::sort(colours.begin(), colours.end(), [](const Colour &a, const Colour &b) { return a.count != b.count ? a.count > b.count : a.value < b.value; });
    QVector<QRgb> palette;
    const auto size = qMin(most, static_cast<int>(colours.size()));
    while (palette.size() < size) {
        const auto next = palette.size() < frequent
            ? colours.begin() + palette.size()
            : std::max_element(colours.begin(), colours.end(), [](const Colour &a, const Colour &b) { return a.count * a.error < b.count * b.error; });
        palette.append(next->value);
        for (Colour &colour : colours)
            colour.error = qMin(colour.error, distance(colour.value, palette.constLast()));
    }
    return palette;
}

QImage withPalette(const QImage &picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGB32);
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        const auto *const line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x)
            ++counts[line[x]];
    }
    const QVector<QRgb> palette = paletteOf(counts);
    QHash<QRgb, uchar> nearest;
    for (auto colour = counts.begin(); colour != counts.end(); ++colour) {
        const auto found
            = std::min_element(palette.begin(), palette.end(), [&colour](QRgb a, QRgb b) { return distance(colour.key(), a) < distance(colour.key(), b); });
        nearest.insert(colour.key(), static_cast<uchar>(found - palette.begin()));
    }
    QImage result(image.size(), QImage::Format_Indexed8);
    result.setColorTable(palette);
    for (int y = 0; y < image.height(); ++y) {
        const auto *const line = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        uchar *const written = result.scanLine(y);
        for (int x = 0; x < image.width(); ++x)
            written[x] = nearest.value(line[x]);
    }
    return result;
}

/// Takes the pictures of one window, one after the other.
class Photographer
{
public:
    Photographer(QQuickWindow &window, const QString &folder)
        : m_window(window)
        , m_folder(folder)
    {
    }

    bool take(const QString &room, int row)
    {
        m_window.setProperty("room", row);
        if (!waitFor([this, &room] { return isThere(room); }))
            return complain(QStringLiteral("the room %1 does not come").arg(room));
        for (const QSize &size : sizes) {
            m_window.resize(size);
            for (const char *look : looks) {
                m_window.setProperty("look", QString::fromLatin1(look));
                settle(rest);
                const QString name
                    = QStringLiteral("%1/%2-%3-%4x%5.png").arg(m_folder, room.toLower(), QString::fromLatin1(look)).arg(size.width()).arg(size.height());
                const QImage picture = m_window.grabWindow();
                if (picture.size() != size)
                    return complain(QStringLiteral("the window has not the size of %1").arg(name));
                constexpr int smallest = 0; // Qt's quality of a PNG file is how fast it is written
                if (!withPalette(picture).save(name, "PNG", smallest))
                    return complain(QStringLiteral("%1 cannot be written").arg(name));
            }
        }
        return true;
    }

    static bool complain(const QString &text)
    {
        std::fprintf(stderr, "window-pictures: %s\n", qPrintable(text));
        return false;
    }

private:
    bool isThere(const QString &room) const
    {
        const QQuickItem *const place = findItem(*m_window.contentItem(), QStringLiteral("place") + room);
        return place && place->property("item").value<QObject *>();
    }

    QQuickWindow &m_window;
    const QString m_folder;
};

/// Whether the pictures of a folder are what was just drawn. Letters may differ by a shade, as another font renderer has it.
bool compare(const QString &folder, const QStringList &pictures)
{
    constexpr int shade = 48; // of 765
    constexpr int fewest = 2000; // one pixel in so many may be another one
    bool isSame = true;
    for (const QString &name : pictures) {
        const QImage drawn = QImage(name).convertToFormat(QImage::Format_RGB32);
        const QString keptName = folder + QLatin1Char('/') + QFileInfo(name).fileName();
        const QImage kept = QImage(keptName).convertToFormat(QImage::Format_RGB32);
        int others = kept.size() == drawn.size() ? 0 : drawn.width() * drawn.height();
        for (int y = 0; kept.size() == drawn.size() && y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x)
                others += distance(kept.pixel(x, y), drawn.pixel(x, y)) > shade ? 1 : 0;
        }
        if (others > drawn.width() * drawn.height() / fewest)
            isSame = Photographer::complain(QStringLiteral("%1 is not what the window shows now; tools/window-pictures renews it").arg(keptName));
    }
    return isSame;
}

QStringList roomNames(const QQuickWindow &window)
{
    QStringList names;
    const QVariantList rooms = window.property("rooms").value<QJSValue>().toVariant().toList();
    for (const QVariant &room : rooms)
        names.append(room.toMap().value(QStringLiteral("name")).toString());
    return names;
}

bool takeAll(Desk &desk, QQuickWindow &window, const QStringList &arguments)
{
    const QString &recording = arguments.at(1);
    const QStringList wanted = arguments.mid(3);
    desk.open(QUrl::fromLocalFile(QFileInfo(recording).absoluteFilePath()));
    waitFor([&desk] { return desk.recording()->count() > 0 && !desk.isReplaying(); });
    const QVector<Recording::Step> steps = desk.recording()->steps();
    if (steps.isEmpty())
        return Photographer::complain(QStringLiteral("%1 does not open: %2").arg(recording, desk.message()));
    desk.goTo(static_cast<double>(steps.last().time) + 1);
    if (!waitFor([&desk] { return desk.recording()->canUndo() && !desk.recording()->canRedo() && !desk.isReplaying(); }))
        return Photographer::complain(QStringLiteral("the car does not get through the recording: %1").arg(desk.message()));
    desk.setSpeed(0);

    Photographer photographer(window, arguments.at(2));
    const QStringList rooms = roomNames(window);
    for (int row = 0; row < rooms.size(); ++row) {
        if ((wanted.isEmpty() || wanted.contains(rooms.at(row), Qt::CaseInsensitive)) && !photographer.take(rooms.at(row), row))
            return false;
    }
    return true;
}

} // namespace

int main(int argc, char **argv)
{
    if (argc > 3 && QByteArray(argv[1]) == "--compare") {
        QStringList pictures;
        for (int i = 3; i < argc; ++i)
            pictures.append(QString::fromLocal8Bit(argv[i]));
        return compare(QString::fromLocal8Bit(argv[2]), pictures) ? 0 : 1;
    }
    QApplication application(argc, argv);
    QApplication::setFont(QFont(QStringLiteral("DejaVu Sans")));
    QQuickStyle::setStyle(QStringLiteral("Fusion"));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 3)
        return !Photographer::complain(QStringLiteral("what is needed is a recording, a folder and names of rooms"));
    Desk desk;
    registerWindowTypes(desk);
    QQmlApplicationEngine engine;
    engine.load(QUrl(QStringLiteral("qrc:/window/Main.qml")));
    auto *const window = engine.rootObjects().isEmpty() ? nullptr : qobject_cast<QQuickWindow *>(engine.rootObjects().first());
    if (!window)
        return 1;
    return takeAll(desk, *window, arguments) ? 0 : 1;
}
