#include "script/script_tokens.h"

#include <cctype>
#include <cstring>

namespace
{

struct Spelling {
    const char *text;
    Token token;
};

// An operator stands before those that it begins with.
constexpr Spelling kOperators[] = {
    {"</", Token::OpenAttributes},
    {"<-", Token::Assign},
    {"<=>", Token::Binary},
    {"<=", Token::Binary},
    {"<<", Token::Binary},
    {"<", Token::Binary},
    {">>>", Token::Binary},
    {">>", Token::Binary},
    {">=", Token::Binary},
    {">", Token::Binary},
    {"==", Token::Binary},
    {"=", Token::Equals},
    {"!=", Token::Binary},
    {"!", Token::Not},
    {"&&", Token::Binary},
    {"&", Token::Binary},
    {"||", Token::Binary},
    {"|", Token::Binary},
    {"^", Token::Binary},
    {"~", Token::Complement},
    {"+=", Token::Assign},
    {"++", Token::Increment},
    {"+", Token::Binary},
    {"-=", Token::Assign},
    {"--", Token::Increment},
    {"-", Token::Minus},
    {"*=", Token::Assign},
    {"*", Token::Binary},
    {"/=", Token::Assign},
    {"/>", Token::CloseAttributes},
    {"/", Token::Binary},
    {"%=", Token::Assign},
    {"%", Token::Binary},
    {"::", Token::DoubleColon},
    {":", Token::Colon},
    {"...", Token::Ellipsis},
    {"..", Token::End}, // the reader gives up
    {".", Token::Dot},
    {";", Token::Semicolon},
    {",", Token::Comma},
    {"?", Token::Question},
    {"@", Token::At},
    {"(", Token::OpenRound},
    {")", Token::CloseRound},
    {"[", Token::OpenSquare},
    {"]", Token::CloseSquare},
    {"{", Token::OpenCurly},
    {"}", Token::CloseCurly},
};

constexpr Spelling kWords[] = {
    {"null", Token::Value},
    {"true", Token::Value},
    {"false", Token::Value},
    {"__LINE__", Token::Value},
    {"__FILE__", Token::Value},
    {"this", Token::This},
    {"base", Token::Base},
    {"constructor", Token::Constructor},
    {"typeof", Token::Unary},
    {"clone", Token::Unary},
    {"resume", Token::Unary},
    {"in", Token::In},
    {"instanceof", Token::Binary},
    {"delete", Token::Delete},
    {"if", Token::If},
    {"else", Token::Else},
    {"while", Token::While},
    {"do", Token::Do},
    {"for", Token::For},
    {"foreach", Token::Foreach},
    {"switch", Token::Switch},
    {"case", Token::Case},
    {"default", Token::Default},
    {"break", Token::Break},
    {"continue", Token::Break},
    {"return", Token::Return},
    {"yield", Token::Return},
    {"throw", Token::Throw},
    {"try", Token::Try},
    {"catch", Token::Catch},
    {"local", Token::Local},
    {"function", Token::Function},
    {"class", Token::Class},
    {"extends", Token::Extends},
    {"static", Token::Static},
    {"enum", Token::Enum},
    {"const", Token::Const},
};

// As the compiler asks, in the same locale.
bool isDigit(char byte)
{
    return std::isdigit(static_cast<unsigned char>(byte)) != 0;
}

bool isWordByte(char byte)
{
    return std::isalnum(static_cast<unsigned char>(byte)) != 0 || byte == '_';
}

} // namespace

ScriptTokens::ScriptTokens(const QByteArray &text) : m_text(text.constData()), m_size(text.size())
{
}

// The compiler takes a zero byte for the end.
char ScriptTokens::byteAt(int position) const
{
    return position < m_size ? m_text[position] : '\0';
}

// Passes `operators` if they stand here.
bool ScriptTokens::skips(const char *operators)
{
    int length = 0;
    for (; operators[length] != '\0'; ++length) {
        if (byteAt(m_position + length) != operators[length])
            return false;
    }
    m_position += length;
    return true;
}

void ScriptTokens::passLineEnd()
{
    ++m_line;
    m_lineStart = ++m_position;
}

// Returns: false if a comment has no end.
bool ScriptTokens::skipBlanks()
{
    for (;;) {
        switch (byteAt(m_position)) {
        case ' ':
        case '\t':
        case '\r':
            ++m_position;
            continue;
        case '\n':
            m_isFirstOfLine = true;
            passLineEnd();
            continue;
        default:
            break;
        }
        const int before = m_position;
        if (!skipComment())
            return false;
        if (m_position == before)
            return true;
    }
}

bool ScriptTokens::skipComment()
{
    if (skips("#") || skips("//")) {
        while (byteAt(m_position) != '\n' && byteAt(m_position) != '\0')
            ++m_position;
        return true;
    }
    if (!skips("/*"))
        return true;
    while (!skips("*/")) {
        if (byteAt(m_position) == '\0')
            return false;
        if (byteAt(m_position) == '\n')
            passLineEnd();
        else
            ++m_position;
    }
    return true;
}

Token ScriptTokens::next()
{
    m_isFirstOfLine = false;
    const bool isReadable = skipBlanks();
    m_begin = m_position;
    m_beginLine = m_line;
    const char byte = byteAt(m_position);
    if (!isReadable || byte == '\0')
        return Token::End;
    if (isDigit(byte))
        return readNumber();
    if (isWordByte(byte))
        return readWord();
    if (skips("@\""))
        return readText('"', true);
    if (skips("\"") || skips("'"))
        return readText(byte, false);
    return readOperator();
}

Token ScriptTokens::readOperator()
{
    for (const Spelling &spelling : kOperators) {
        if (skips(spelling.text))
            return spelling.token;
    }
    ++m_position;
    return Token::Other;
}

// Behind the first quote.
Token ScriptTokens::readText(char quote, bool isVerbatim)
{
    for (;;) {
        const char byte = byteAt(m_position);
        if (byte == '\0' || (byte == '\n' && !isVerbatim))
            return Token::End;
        if (byte == '\n') {
            passLineEnd();
            continue;
        }
        ++m_position;
        if (byte == '\\' && !isVerbatim && byteAt(m_position) != '\0')
            ++m_position;
        // Two quotes are one of a verbatim text.
        if (byte == quote && (!isVerbatim || !skips("\"")))
            return quote == '\'' ? Token::Integer : Token::Text;
    }
}

Token ScriptTokens::readNumber()
{
    const bool isLong = byteAt(m_position) == '0';
    ++m_position;
    if (isLong && (byteAt(m_position) == 'x' || byteAt(m_position) == 'X')) {
        do
            ++m_position;
        while (std::isxdigit(static_cast<unsigned char>(byteAt(m_position))) != 0);
        return Token::Integer;
    }
    if (isLong && byteAt(m_position) >= '0' && byteAt(m_position) <= '7') { // octal
        while (byteAt(m_position) >= '0' && byteAt(m_position) <= '7')
            ++m_position;
        return Token::Integer;
    }
    Token token = Token::Integer;
    for (;; ++m_position) {
        const char byte = byteAt(m_position);
        const bool isExponent = byte == 'e' || byte == 'E';
        if (byte != '.' && !isExponent && !isDigit(byte))
            return token;
        if (byte == '.' || isExponent)
            token = Token::Float;
        const char sign = isExponent ? byteAt(m_position + 1) : '\0';
        if (sign == '+' || sign == '-')
            ++m_position;
    }
}

Token ScriptTokens::readWord()
{
    while (isWordByte(byteAt(m_position)))
        ++m_position;
    const auto length = static_cast<std::size_t>(m_position - m_begin);
    for (const Spelling &word : kWords) {
        if (std::strlen(word.text) == length &&
            std::memcmp(m_text + m_begin, word.text, length) == 0)
            return word.token;
    }
    return Token::Name;
}
