#include "svgplot.h"

#include "svgpanels.h"

#include <variant>

namespace
{

constexpr double border = (SvgPlot::width - SvgPanels::usualWidth) / 2;
constexpr double titleHeight = 28;
constexpr double panelGap = 20;

} // namespace

QByteArray SvgPlot::draw(const Figure &figure)
{
    QStringList remarks;
    for (const QString &remark : figure.remarks)
        remarks += SvgCanvas::lines(remark, SvgPanels::usualWidth);
    const auto heightOf = [](const Figure::Panel &panel) { return std::visit([](const auto &one) { return SvgPanels::heightOf(one); }, panel); };
    double height = 2 * border + titleHeight + remarks.size() * SvgCanvas::lineHeight;
    for (const Figure::Panel &panel : figure.panels)
        height += heightOf(panel) + panelGap;

    SvgCanvas canvas(width, height, figure.title);
    canvas.text({border, border + SvgCanvas::textSize}, SvgCanvas::shortened(figure.title, width - 2 * border), QStringLiteral("heading"));
    double y = border + titleHeight;
    for (const Figure::Panel &panel : figure.panels) {
        const QRectF area(border, y, width - 2 * border, heightOf(panel));
        std::visit([&canvas, &area](const auto &one) { SvgPanels::draw(canvas, one, area); }, panel);
        y += area.height() + panelGap;
    }
    for (const QString &line : qAsConst(remarks)) {
        y += SvgCanvas::lineHeight;
        canvas.text({border, y}, SvgCanvas::shortened(line, width - 2 * border), QStringLiteral("faint"));
    }
    return canvas.finish();
}
