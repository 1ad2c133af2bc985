#include "logframes.h"

#include "logmarks.h"

#include <QtCore/QStringList>

LogFrames::LogFrames()
    : m_last(std::begin(LogForms::forms))
    , m_met(std::size(LogForms::forms))
{
}

QString LogFrames::setPattern(const QString &pattern)
{
    return m_pattern.set(pattern);
}

LogFrames::Found LogFrames::read(std::string_view line, quint64 number, LogFrame &frame)
{
    if (m_export.isOpen() || JournalExport::isBeginning(line)) {
        m_metExport = true;
        return m_export.add(line, number, frame) ? Found::Frame : Found::Nothing;
    }
    const std::size_t mark = LogMarks::find(line);
    if (mark == LogMarks::none)
        return Found::Nothing;
    const auto begin = [&frame, number] {
        frame = LogFrame();
        frame.line = number;
    };
    if (m_pattern.isSet()) {
        begin();
        if (m_pattern.matches(line, mark, frame)) {
            m_metPattern = true;
            return Found::Frame;
        }
    }
    begin();
    if (m_last->recognise(line, mark, frame)) {
        m_met[std::size_t(m_last - std::begin(LogForms::forms))] = true;
        return Found::Frame;
    }
    for (const LogForms::Form &form : LogForms::forms) {
        begin();
        if (&form != m_last && form.recognise(line, mark, frame)) {
            // The last one takes almost anything, lines of other forms as well.
            if (&form != std::end(LogForms::forms) - 1)
                m_last = &form;
            m_met[std::size_t(&form - std::begin(LogForms::forms))] = true;
            return Found::Frame;
        }
    }
    begin();
    frame.text = line.substr(mark);
    return Found::UnknownForm;
}

bool LogFrames::finish(LogFrame &frame)
{
    return m_export.finish(frame);
}

QStringList LogFrames::met() const
{
    QStringList names;
    if (m_metPattern)
        names.append(QStringLiteral("--pattern"));
    if (m_metExport)
        names.append(QStringLiteral("journalctl -o export"));
    for (std::size_t i = 0; i < m_met.size(); ++i) {
        if (m_met[i])
            names.append(QLatin1String(LogForms::forms[i].name));
    }
    return names;
}
