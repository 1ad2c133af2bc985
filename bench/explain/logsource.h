#ifndef LOGSOURCE_H
#define LOGSOURCE_H

#include <QtCore/QByteArray>
#include <QtCore/QProcess>
#include <QtCore/QString>

#include <memory>
#include <string_view>
#include <vector>

/**
 * The lines of a log, one after the other, in constant memory: of a file, of the standard input, of a file that gzip, xz or zstd
 * compressed, or of a file that grows.
 *
 * A line ends with LF or CRLF. Bytes are handed on as they are. One longer than longestLine is cut.
 */
class LogSource
{
public:
    static constexpr std::size_t longestLine = 65536;
    static const char *standardInput() { return "-"; }

    enum class Next {
        Line,
        Nothing, ///< for now, of a log that is followed
        End,
    };

    /// Something about the log that is no line of it: the file was replaced, a line was cut.
    struct Note
    {
        quint64 line;
        QString text;
    };

    LogSource();
    ~LogSource();

    /**
     * @param file a name, or standardInput()
     * @param isFollowed whether a regular file goes on when its end is reached, also as another file of the same name
     * @return what is the matter; empty when it is open
     */
    QString open(const QString &file, bool isFollowed);

    /// @param line valid until the next call; without its end
    Next next(std::string_view &line);

    /// Of the line that next() gave last, from 1.
    quint64 lineNumber() const { return m_lineNumber; }
    bool wasCut() const { return m_wasCut; }
    /// Bytes of all lines so far.
    quint64 bytes() const { return m_bytes; }

    /// Waits until there may be more to read, at most @p milliseconds. For a log that is followed.
    void wait(int milliseconds);

    /// What the tool that decompresses complained about, once the end is reached; empty for nothing.
    QString failure();
    /// Those since the last call.
    std::vector<Note> takeNotes();

private:
    Q_DISABLE_COPY(LogSource)

    QString openFile(const QString &file);
    QString openThrough(const char *tool, const QString &file);
    bool fill();
    bool hasGoneOn();
    void note(const QString &text);

    std::vector<char> m_buffer;
    std::size_t m_begin = 0; // of what was not handed on yet
    std::size_t m_end = 0;
    std::size_t m_searched = 0; // from m_begin on there is no end of a line before here
    bool m_skipsRest = false; // of a line that was cut
    bool m_wasCut = false;
    bool m_isFollowed = false;
    int m_descriptor = -1;
    quint64 m_lineNumber = 0;
    quint64 m_bytes = 0;
    quint64 m_read = 0; // of the file that is open
    QString m_file;
    QString m_tool;
    std::unique_ptr<QProcess> m_process;
    std::vector<Note> m_notes;
};

#endif
