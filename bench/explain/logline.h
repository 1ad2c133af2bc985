#ifndef LOGLINE_H
#define LOGLINE_H

#include "loglines.h"

#include <QtCore/QString>
#include <QtCore/QVariant>
#include <QtCore/QVector>

#include <optional>
#include <string_view>

/// A line of the library, understood.
struct LogLine
{
    static constexpr qint64 unknown = -1;

    const LogLines::Row *row = nullptr;
    qint64 thread = unknown; ///< its number; facade and daemon do not say it
    /// In order: qint64, double, bool, QString, or a QVariantList of doubles.
    QVector<QVariant> values;

    LogLines::Id id() const { return row->id; }
    bool isError() const { return row->form == LogLines::Form::Critical || row->form == LogLines::Form::FacadeError; }
    int number(int index) const { return values.at(index).toInt(); }
    double real(int index) const { return values.at(index).toDouble(); }
    bool isTrue(int index) const { return values.at(index).toBool(); }
    QString text(int index) const { return values.at(index).toString(); }

    /**
     * @param text from the library's mark on
     * @return empty for a line that is cut, or that no row describes
     */
    static std::optional<LogLine> read(std::string_view text);
};

#endif
