#include "script/script_source.h"

#include "script/script_tokens.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace
{

// The compiler draws the mark of "do" and that of its body together, before the loop, unless
// something stands between them. This does, and means nothing else.
constexpr const char *kBeforeDo = "for(local __one_do=true;__one_do;__one_do=false)";

bool beginsLoop(Token token)
{
    return token == Token::While || token == Token::For || token == Token::Foreach ||
           token == Token::Do;
}

// What the library would run, or stumble over.
QString faultOf(const QByteArray &text)
{
    if (text.startsWith("\xFF\xFE") || text.startsWith("\xFE\xFF"))
        return QStringLiteral("the script is saved as UTF-16; save it as UTF-8");
    if (text.startsWith("\xFA\xFA"))
        return QStringLiteral("the script is compiled, and nothing could stop it from doing harm; "
                              "only its text can be run");
    if (text.size() > kLongestScript)
        return QStringLiteral("the file is too large for a script");
    if (text.contains('\0'))
        return QStringLiteral("the script is no text, or is saved as UTF-16; save it as UTF-8");
    return QString();
}

} // namespace

ScriptSource::ScriptSource(QByteArray name, QByteArray text)
    : m_name(std::move(name)), m_text(std::move(text))
{
    ScriptTokens tokens(m_text);
    for (Token token = tokens.next(); token != Token::End; token = tokens.next()) {
        if (beginsLoop(token))
            m_words.push_back({tokens.begin(), tokens.end(), token == Token::Do});
    }
}

int ScriptSource::nextByte()
{
    if (isBehindWord()) {
        m_added.push_back({m_compiledLine, m_position - m_lineStart});
        ++m_compiledLine;
        ++m_word;
        m_isWrapped = false;
        return '\n';
    }
    if (isAtDo() && !m_isWrapped) {
        m_wrapped = kBeforeDo;
        m_isWrapped = true;
    }
    if (*m_wrapped != '\0')
        return *m_wrapped++;
    if (m_position >= m_text.size())
        return 0;
    const char byte = m_text.at(m_position); // operator[] would look for other owners
    ++m_position;
    if (byte == '\n') {
        ++m_compiledLine;
        m_lineStart = m_position;
    }
    return static_cast<unsigned char>(byte);
}

bool ScriptSource::isAtDo() const
{
    return m_word < m_words.size() && m_words[m_word].isDo && m_words[m_word].begin == m_position;
}

bool ScriptSource::isBehindWord() const
{
    return m_word < m_words.size() && m_words[m_word].end == m_position;
}

int ScriptSource::lineOf(int compiledLine) const
{
    const auto isBefore = [&](const AddedEnd &end) { return end.compiledLine < compiledLine; };
    return compiledLine - static_cast<int>(std::count_if(m_added.begin(), m_added.end(), isBefore));
}

int ScriptSource::columnOf(int compiledLine, int compiledColumn) const
{
    for (const AddedEnd &end : m_added) {
        if (end.compiledLine == compiledLine - 1)
            return end.column + compiledColumn;
    }
    return compiledColumn;
}

QByteArray ScriptSource::lineText(int line) const
{
    const QList<QByteArray> lines = m_text.split('\n');
    return line >= 1 && line <= lines.size() ? lines[line - 1] : QByteArray();
}

ScriptSource &ScriptSources::add(const QByteArray &name, const QByteArray &text)
{
    constexpr qint64 kOwnBytes = 256; // what one takes without its text
    m_totalBytes += text.size() + kOwnBytes;
    m_sources.push_back(std::make_shared<ScriptSource>(name, text));
    return *m_sources.back();
}

ScriptSource *ScriptSources::last()
{
    return m_sources.empty() ? nullptr : m_sources.back().get();
}

const ScriptSource *ScriptSources::find(const QByteArray &nameEnd) const
{
    for (auto source = m_sources.rbegin(); source != m_sources.rend(); ++source) {
        if ((*source)->name().endsWith(nameEnd))
            return source->get();
    }
    return nullptr;
}

int ScriptSources::lineOf(const QByteArray &nameEnd, int compiledLine) const
{
    const ScriptSource *source = find(nameEnd);
    return source == nullptr ? compiledLine : source->lineOf(compiledLine);
}

bool ScriptSources::throwsAt(const QByteArray &name, int line) const
{
    const ScriptSource *source = find(name);
    return source != nullptr && source->lineText(line).contains("throw");
}

bool readScriptFile(const QByteArray &path, QByteArray *text, QString *fault)
{
    QFile file(QString::fromLocal8Bit(path));
    // A pipe or a device may never come to its end.
    if (path.isEmpty() || !QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        *fault = QStringLiteral("cannot open the file");
        return false;
    }
    // The buffer stays as large as what was asked for; one byte more shows that a file is too
    // large.
    *text = file.read(std::min(file.size(), kLongestScript) + 1);
    *fault = faultOf(*text);
    if (text->startsWith("\xEF\xBB\xBF"))
        text->remove(0, 3);
    return true;
}

QString placeText(const QString &source, int line)
{
    const int folder =
        std::max(source.lastIndexOf(QLatin1Char('/')), source.lastIndexOf(QLatin1Char('\\')));
    return source.mid(folder + 1) + QStringLiteral(", line ") + QString::number(line);
}
