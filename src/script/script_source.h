// The texts that a machine compiles: read whole, looked at, and handed to the compiler one byte at
// a time. The library's own way takes whatever a file holds, and reads it with a function that
// crashes the compiler over a file in UTF-16.
//
// The compiler sees a line end behind every word that begins a loop. It marks lines, not loops, for
// the debug hook; so there is a mark in the body of every loop, wherever that stands. Lines are
// told as the file has them all the same.
//
// Thread: as the machine.
#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

// Scripts are some KiB.
constexpr qint64 kLongestScript = 1024 * 1024;

class ScriptSource
{
public:
    ScriptSource(QByteArray name, QByteArray text);

    const QByteArray &name() const { return m_name; }
    const QByteArray &text() const { return m_text; }
    // The next byte for the compiler, 0 behind the last.
    int nextByte();

    // What the compiler calls a line or a column, as the text has it; lines from 1.
    int lineOf(int compiledLine) const;
    int columnOf(int compiledLine, int compiledColumn) const;
    // Of a line of the text.
    QByteArray lineText(int line) const;

private:
    struct LoopWord {
        int begin;
        int end;
        bool isDo;
    };
    struct AddedEnd {
        int compiledLine; // that it ends
        int column;       // of the text, behind the loop's word
    };

    bool isAtDo() const;
    bool isBehindWord() const;

    QByteArray m_name;
    QByteArray m_text;
    int m_position = 0;
    int m_compiledLine = 1;
    int m_lineStart = 0;
    std::vector<LoopWord> m_words; // all of the text
    std::size_t m_word = 0;        // the first that has not been handed over
    bool m_isWrapped = false;      // that one, a "do"
    const char *m_wrapped = "";    // what goes before it, as far as it is to come
    std::vector<AddedEnd> m_added;
};

// Those of one machine. They stay until it is closed: an error may name any line of them.
class ScriptSources
{
public:
    ScriptSource &add(const QByteArray &name, const QByteArray &text);
    // The one that was added last; null: none was.
    ScriptSource *last();
    qint64 totalBytes() const { return m_totalBytes; }
    // As ScriptSource::lineOf(); of an unknown text the same. `nameEnd` may lack its beginning.
    int lineOf(const QByteArray &nameEnd, int compiledLine) const;
    // Whether the script itself raises an error in this line of the text.
    bool throwsAt(const QByteArray &name, int line) const;

private:
    const ScriptSource *find(const QByteArray &nameEnd) const;

    std::vector<std::shared_ptr<ScriptSource>> m_sources;
    qint64 m_totalBytes = 0;
};

// Reads the script at `path` (8 bits). `fault`: why it cannot be compiled; empty: it can be.
// Returns: whether there is such a file.
bool readScriptFile(const QByteArray &path, QByteArray *text, QString *fault);

// For people: "gb_mbc5.nut, line 12". Without folders.
QString placeText(const QString &source, int line);
