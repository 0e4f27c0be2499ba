// Where a command's Reporter writes to in a test, and what arrived there.
#pragma once

#include "cli/reporter.h"
#include "output_file.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QVector>

class ReportCapture
{
public:
    explicit ReportCapture(OutputStyle style) : m_reporter(targetOf(style, m_answers, m_messages))
    {
    }

    Reporter &reporter() { return m_reporter; }
    // Standard output and standard error.
    QString answers() const { return m_answers.text(); }
    QString messages() const { return m_messages.text(); }

    // The lines of standard output; a line that is no JSON object is an empty one.
    QVector<QJsonObject> objects() const
    {
        QVector<QJsonObject> found;
        // UTF-8, whatever the system's encoding is.
        for (const QByteArray &line : m_answers.bytes().split('\n')) {
            if (!line.isEmpty())
                found << QJsonDocument::fromJson(line).object();
        }
        return found;
    }

private:
    static OutputTarget targetOf(OutputStyle style, const OutputFile &answers,
                                 const OutputFile &messages)
    {
        OutputTarget target;
        target.style = style;
        target.answers = answers.stream();
        target.messages = messages.stream();
        return target;
    }

    OutputFile m_answers;
    OutputFile m_messages;
    Reporter m_reporter;
};
