// A stream into a file that vanishes with it.
#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio>
#include <memory>

class OutputFile
{
public:
    OutputFile() : m_stream(std::tmpfile())
    {
        if (m_stream == nullptr)
            qFatal("cannot make a temporary file");
    }

    std::FILE *stream() const { return m_stream.get(); }

    QString text() const { return QString::fromLocal8Bit(bytes()); }

    QByteArray bytes() const
    {
        std::fflush(m_stream.get());
        std::rewind(m_stream.get());
        QByteArray bytes;
        for (int c = std::fgetc(m_stream.get()); c != EOF; c = std::fgetc(m_stream.get()))
            bytes += static_cast<char>(c);
        return bytes;
    }

private:
    struct Closer {
        void operator()(std::FILE *stream) const { std::fclose(stream); }
    };

    std::unique_ptr<std::FILE, Closer> m_stream;
};
