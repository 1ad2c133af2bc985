#ifndef SVGCANVAS_H
#define SVGCANVAS_H

#include <QtCore/QByteArray>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>
#include <QtCore/QXmlStreamWriter>

/**
 * A drawing that needs no other file: its colours, for light and for dark surroundings, and its background are in it. Texts stay texts, in
 * whatever fonts there are.
 *
 * Looks are classes of its style sheet: "text", "faint", "heading", "grid", "axis", and by the index in a legend lineOf() and fillOf().
 */
class SvgCanvas
{
public:
    enum class Anchor { Begin, Middle, End };

    static constexpr double textSize = 12;
    static constexpr double lineHeight = 16;

    /// @param height of all that is going to be drawn
    SvgCanvas(double width, double height, const QString &title);

    void rectangle(const QRectF &area, const QString &look, const QString &title = {}, double opacity = 1, double radius = 0);
    void line(QPointF from, QPointF to, const QString &look);
    void polyline(const QVector<QPointF> &points, const QString &look);
    void curve(QPointF from, QPointF to, const QString &look, const QString &title = {});
    void circle(QPointF centre, double radius, const QString &look, const QString &title = {});
    void path(const QString &data, const QString &look);
    void text(QPointF place, const QString &text, const QString &look, Anchor anchor = Anchor::Begin);

    /// How wide a text is at most, in most fonts.
    static double widthOf(const QString &text);
    /// As much of it as fits, with a mark where it was cut; empty where that is too little to be of use.
    static QString shortened(const QString &text, double width);

    /// A paragraph in lines that fit, but for words that are longer than one.
    static QStringList lines(const QString &text, double width);

    static QString lineOf(int name);
    static QString fillOf(int name);

    /// The whole drawing; nothing can be drawn after it.
    QByteArray finish();

private:
    Q_DISABLE_COPY(SvgCanvas)

    void begin(const char *element, const QString &look);
    void number(const char *attribute, double value);
    void end(const QString &title = {});

    QByteArray m_bytes;
    QXmlStreamWriter m_writer;
};

#endif
