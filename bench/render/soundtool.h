#ifndef SOUNDTOOL_H
#define SOUNDTOOL_H

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

/// Programs of others that make, filter and measure sound.
class SoundTool
{
public:
    static SoundTool ffmpeg() { return {QStringLiteral("ffmpeg"), QStringLiteral("ffmpeg")}; }
    static SoundTool espeak() { return {QStringLiteral("espeak-ng"), QStringLiteral("espeak-ng")}; }

    struct Outcome
    {
        QString problem; ///< in one line; empty where there was none
        QByteArray messages; ///< what it said on its standard error
    };

    /**
     * Runs it to its end.
     *
     * @param folder the one to run in @param told receives each line of its standard output; empty: nobody does
     */
    Outcome run(const QStringList &arguments, const QString &folder, const std::function<void(const QByteArray &)> &told = {}) const;

    /// What is the matter where it is not installed; empty where it is.
    QString absence() const;

private:
    SoundTool(const QString &program, const QString &debianPackage);

    const QString m_program;
    const QString m_package;
};

#endif
