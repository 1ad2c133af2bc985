#ifndef SCENARIOSOURCE_H
#define SCENARIOSOURCE_H

#include <QtCore/QString>
#include <QtCore/QStringList>
#include <QtCore/QVector>

/**
 * The text of a scenario, read as far as is needed to tell where things begin and end: comments, texts, regular expressions,
 * brackets and a few keywords.
 *
 * It is no parser: what it cannot tell apart, such as a regular expression right after a block, it takes for something else.
 */
class ScenarioSource
{
public:
    explicit ScenarioSource(const QString &text);

    /// The program as the engine understands it: a first line "#!..." has become a comment.
    QString text() const { return m_program; }
    /// Its lines as the engine counts them.
    QStringList lines() const;

    /**
     * The program with marks, every line where it was.
     *
     * - Loops begin each turn by reading the global Infinity, which makes the engine note where it is. Without it a loop that only
     *   counts would seem to stand where the last call was.
     * - "throw" first calls the function @p thrownMark: what is thrown need not be an Error, which knows where it was made.
     */
    QString marked(const QString &thrownMark) const;

    /// What is wrong with texts, comments and brackets, empty for nothing. It counts only where the engine refuses the program.
    QString problem() const { return m_complaint; }
    int problemLine() const { return m_complaintLine; }

    /// What is still open at the end: "{ of line 3"; empty for nothing.
    QString unclosed() const;
    /// The line of the last thing that is no comment.
    int lastLine() const { return m_lastTokenLine; }

private:
    enum class Mark {
        Turn, ///< before the condition of a loop
        EndlessTurn, ///< in place of the condition that a loop does without
        Throw, ///< before what is thrown
    };
    struct Bracket
    {
        QChar opening;
        int line = 0;
        QString keyword; // that stands before it: "for", "while", "if" or other words
        bool conditionSeen = false; // of a "for"
    };

    void readToken();
    void readWord();
    void readText(QChar quote);
    void readTemplate(int from);
    void readRegularExpression();
    void readComment();
    void openBracket(QChar opening);
    void closeBracket(QChar closing);
    void endOfPart();
    void complain(const QString &text, int where);
    bool expectsValue() const;
    QChar at(int index) const { return index < m_program.size() ? m_program.at(index) : QChar(); }
    int skipBlanks(int index) const;
    void take(const QString &token);

    QString m_program;
    QVector<QPair<int, Mark>> m_marks; // in the order of their positions
    QString m_complaint;
    int m_complaintLine = 0;
    int m_lastTokenLine = 1;

    // Where the reading is
    int m_position = 0;
    int m_line = 1;
    QVector<Bracket> m_open;
    QString m_previous; // token, blanks and comments left out
    bool m_afterHead = false; // after the bracket that closes the head of an if or a loop
};

#endif
