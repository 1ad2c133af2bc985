#include "svgcanvas.h"

#include <algorithm>
#include <cmath>
#include <iterator>

namespace
{

struct Color
{
    const char *name;
    const char *light;
    const char *dark;
};

constexpr Color roles[] = {
    {"background", "#fcfcfb", "#1a1a19"},
    {"text", "#0b0b0b", "#ffffff"},
    {"faint", "#52514e", "#c3c2b7"},
    {"grid", "#e1e0d9", "#2c2c2a"},
    {"axis", "#a5a49b", "#5c5b56"},
};

/// In an order in which neighbours can be told from each other, also by those who see fewer colours.
constexpr Color colors[] = {
    {"blue", "#2a78d6", "#3987e5"},
    {"orange", "#eb6834", "#d95926"},
    {"aqua", "#1baf7a", "#199e70"},
    {"violet", "#4a3aa7", "#9085e9"},
    {"yellow", "#eda100", "#c98500"},
    {"magenta", "#e87ba4", "#d55181"},
    {"green", "#008300", "#3aa33a"},
    {"red", "#e34948", "#e66767"},
};

QString sheet(bool isDark)
{
    QString text;
    const auto shade = [isDark](const Color &color) { return QLatin1String(isDark ? color.dark : color.light); };
    for (const Color &role : roles) {
        const QString name = QLatin1String(role.name);
        const bool isDrawn = name == QLatin1String("grid") || name == QLatin1String("axis");
        text += QStringLiteral(".%1{%2:%3}\n").arg(name, isDrawn ? QStringLiteral("stroke") : QStringLiteral("fill"), shade(role));
    }
    text += QStringLiteral(".heading{fill:%1}\n").arg(shade(roles[1]));
    for (int i = 0; i < int(std::size(colors)); ++i) {
        text += QStringLiteral(".line%1{stroke:%2}\n").arg(i).arg(shade(colors[i]));
        text += QStringLiteral(".fill%1{fill:%2}\n").arg(i).arg(shade(colors[i]));
    }
    return text;
}

QString styleSheet()
{
    const QString shapes = QStringLiteral("text{font-family:sans-serif;font-size:%1px}\n"
                                          ".heading{font-weight:bold}\n"
                                          "polyline,path,line{fill:none}\n"
                                          "polyline,path{stroke-width:2;stroke-linejoin:round}\n"
                                          ".grid,.axis{stroke-width:1;fill:none}\n"
                                          ".break{stroke-dasharray:2 3}\n"
                                          ".edge{stroke-width:1.5;stroke-opacity:0.7}\n"
                                          ".cell{shape-rendering:crispEdges}\n")
                               .arg(SvgCanvas::textSize);
    return QLatin1Char('\n') + shapes + sheet(false) + QStringLiteral("@media (prefers-color-scheme:dark){\n") + sheet(true) + QStringLiteral("}\n");
}

QString numberText(double value)
{
    constexpr double precision = 100;
    return QString::number(std::round(value * precision) / precision);
}

QString pointText(QPointF point)
{
    return numberText(point.x()) + QLatin1Char(',') + numberText(point.y());
}

int inTurn(int name)
{
    return name % int(std::size(colors));
}

} // namespace

SvgCanvas::SvgCanvas(double width, double height, const QString &title)
    : m_writer(&m_bytes)
{
    m_writer.setAutoFormatting(true);
    m_writer.setAutoFormattingIndent(0);
    m_writer.writeStartDocument();
    m_writer.writeStartElement(QStringLiteral("svg"));
    m_writer.writeDefaultNamespace(QStringLiteral("http://www.w3.org/2000/svg"));
    m_writer.writeAttribute(QStringLiteral("viewBox"), QStringLiteral("0 0 %1 %2").arg(numberText(width), numberText(height)));
    number("width", width);
    number("height", height);
    m_writer.writeTextElement(QStringLiteral("title"), title);
    m_writer.writeTextElement(QStringLiteral("style"), styleSheet());
    rectangle({0, 0, width, height}, QStringLiteral("background"));
}

void SvgCanvas::begin(const char *element, const QString &look)
{
    m_writer.writeStartElement(QLatin1String(element));
    if (!look.isEmpty())
        m_writer.writeAttribute(QStringLiteral("class"), look);
}

void SvgCanvas::number(const char *attribute, double value)
{
    m_writer.writeAttribute(QLatin1String(attribute), numberText(value));
}

void SvgCanvas::end(const QString &title)
{
    if (!title.isEmpty())
        m_writer.writeTextElement(QStringLiteral("title"), title);
    m_writer.writeEndElement();
}

void SvgCanvas::rectangle(const QRectF &area, const QString &look, const QString &title, double opacity, double radius)
{
    begin("rect", look);
    number("x", area.x());
    number("y", area.y());
    number("width", area.width());
    number("height", area.height());
    if (opacity < 1)
        number("fill-opacity", opacity);
    if (radius > 0)
        number("rx", radius);
    end(title);
}

void SvgCanvas::line(QPointF from, QPointF to, const QString &look)
{
    begin("line", look);
    number("x1", from.x());
    number("y1", from.y());
    number("x2", to.x());
    number("y2", to.y());
    end();
}

void SvgCanvas::polyline(const QVector<QPointF> &points, const QString &look)
{
    QStringList texts;
    for (const QPointF &point : points)
        texts.append(pointText(point));
    begin("polyline", look);
    m_writer.writeAttribute(QStringLiteral("points"), texts.join(QLatin1Char(' ')));
    end();
}

void SvgCanvas::curve(QPointF from, QPointF to, const QString &look, const QString &title)
{
    const double middle = (from.x() + to.x()) / 2;
    begin("path", look);
    m_writer.writeAttribute(QStringLiteral("d"),
                            QStringLiteral("M%1 C%2 %3 %4").arg(pointText(from), pointText({middle, from.y()}), pointText({middle, to.y()}), pointText(to)));
    end(title);
}

void SvgCanvas::circle(QPointF centre, double radius, const QString &look, const QString &title)
{
    begin("circle", look);
    number("cx", centre.x());
    number("cy", centre.y());
    number("r", radius);
    end(title);
}

void SvgCanvas::path(const QString &data, const QString &look)
{
    begin("path", look);
    m_writer.writeAttribute(QStringLiteral("d"), data);
    end();
}

void SvgCanvas::text(QPointF place, const QString &text, const QString &look, Anchor anchor)
{
    if (text.isEmpty())
        return;
    begin("text", look);
    number("x", place.x());
    number("y", place.y());
    if (anchor != Anchor::Begin)
        m_writer.writeAttribute(QStringLiteral("text-anchor"), anchor == Anchor::Middle ? QStringLiteral("middle") : QStringLiteral("end"));
    m_writer.writeCharacters(text);
    end();
}

double SvgCanvas::widthOf(const QString &text)
{
    // Sans-serif fonts of most systems keep below this, DejaVu's among them.
    constexpr double widest = 0.62;
    return text.size() * textSize * widest;
}

QString SvgCanvas::shortened(const QString &text, double width)
{
    if (widthOf(text) <= width)
        return text;
    constexpr int least = 3;
    const int count = int(width / widthOf(QStringLiteral("x"))) - 1;
    return count < least ? QString() : text.left(count) + QChar(0x2026);
}

QStringList SvgCanvas::lines(const QString &text, double width)
{
    QStringList lines;
    QString line;
    const QStringList words = text.split(QLatin1Char(' '));
    for (const QString &word : words) {
        const QString longer = line.isEmpty() ? word : line + QLatin1Char(' ') + word;
        if (!line.isEmpty() && widthOf(longer) > width) {
            lines.append(line);
            line = word;
        } else {
            line = longer;
        }
    }
    lines.append(line);
    return lines;
}

QString SvgCanvas::lineOf(int name)
{
    return QStringLiteral("line%1").arg(inTurn(name));
}

QString SvgCanvas::fillOf(int name)
{
    return QStringLiteral("fill%1").arg(inTurn(name));
}

QByteArray SvgCanvas::finish()
{
    m_writer.writeEndDocument();
    return m_bytes;
}
