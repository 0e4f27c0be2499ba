#include "script/script_source.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstring>
#include <utility>

namespace
{

constexpr std::array<const char *, 4> kLoopWords = {"while", "for", "foreach", "do"};

// The compiler draws the mark of "do" and that of its body together, before the loop, unless
// something stands between them. This does, and means nothing else.
constexpr const char *kBeforeDo = "for(local __one_do=true;__one_do;__one_do=false)";

bool isWordByte(char byte)
{
    return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '_';
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
}

int ScriptSource::nextByte()
{
    if (endsLoopWord()) {
        m_added.push_back({m_compiledLine, m_position - m_lineStart});
        ++m_compiledLine;
        m_wordStart = -1;
        return '\n';
    }
    if (m_wordStart < 0 && m_in == In::Code && startsDo()) {
        m_wrapped = kBeforeDo;
        m_lastDo = m_position;
    }
    if (*m_wrapped != '\0')
        return *m_wrapped++;
    if (m_position >= m_text.size())
        return 0;
    const char byte = m_text.at(m_position); // operator[] would look for other owners
    note(byte);
    ++m_position;
    return static_cast<unsigned char>(byte);
}

// Called for every byte: without copies of the text.
bool ScriptSource::startsDo() const
{
    return m_lastDo != m_position && isWordAt(m_position, "do") &&
           (m_position + 2 >= m_text.size() || !isWordByte(m_text.at(m_position + 2)));
}

bool ScriptSource::isWordAt(int position, const char *word) const
{
    // A zero byte stands behind the text.
    return std::strncmp(m_text.constData() + position, word, std::strlen(word)) == 0;
}

bool ScriptSource::endsLoopWord() const
{
    if (m_wordStart < 0 || (m_position < m_text.size() && isWordByte(m_text.at(m_position))))
        return false;
    const auto length = static_cast<std::size_t>(m_position - m_wordStart);
    return std::any_of(kLoopWords.begin(), kLoopWords.end(), [&](const char *word) {
        return std::strlen(word) == length && isWordAt(m_wordStart, word);
    });
}

// Follows what the compiler's own reader takes for words, texts and comments.
void ScriptSource::note(char byte)
{
    const char last = std::exchange(m_last, byte);
    if (byte == '\n') {
        ++m_compiledLine;
        m_lineStart = m_position + 1;
    }
    switch (m_in) {
    case In::Code:
        if (!isWordByte(byte))
            m_wordStart = -1;
        else if (m_wordStart < 0)
            m_wordStart = m_position;
        if (byte == '#' || (last == '/' && byte == '/'))
            m_in = In::LineComment;
        else if (last == '/' && byte == '*')
            m_in = In::BlockComment;
        else if (byte == '"')
            m_in = last == '@' ? In::VerbatimText : In::Text;
        else if (byte == '\'')
            m_in = In::Character;
        if (m_in != In::Code)
            m_last = 0;
        return;
    case In::LineComment:
        if (byte == '\n')
            m_in = In::Code;
        return;
    case In::BlockComment:
        if (last == '*' && byte == '/') {
            m_in = In::Code;
            m_last = 0;
        }
        return;
    case In::Text:
    case In::Character:
        if (last == '\\')
            m_last = 0;
        else if (byte == (m_in == In::Text ? '"' : '\''))
            m_in = In::Code;
        return;
    case In::VerbatimText: // two quotes are one of the text: it ends and begins again
        if (byte == '"') {
            m_in = In::Code;
            m_last = '@';
        }
        return;
    }
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
