// The words, literals and operators of a script's text, cut as the compiler's own reader cuts them.
//
// Thread: any.
#pragma once

#include <QByteArray>

enum class Token {
    End, // of the text, or of what can be read of it: the compiler reports why
    // Bytes by themselves, then operators of several.
    Semicolon,
    Comma,
    Colon,
    Question,
    Dot,
    At,
    Not,
    Complement,
    Minus,
    OpenRound,
    CloseRound,
    OpenSquare,
    CloseSquare,
    OpenCurly,
    CloseCurly,
    OpenAttributes,
    CloseAttributes,
    DoubleColon,
    Ellipsis,
    Increment, // ++ and --
    Equals,    // =
    Assign,    // <- += -= *= /= %=
    Binary,    // in and instanceof, too; not the minus
    Other,     // nothing that the language has a use for
    // Literals and names.
    Integer,
    Float,
    Text,
    Name,
    // Words.
    Value, // null true false __LINE__ __FILE__
    This,
    Base,
    Constructor,
    Unary, // typeof clone resume
    In,
    Delete,
    If,
    Else,
    While,
    Do,
    For,
    Foreach,
    Switch,
    Case,
    Default,
    Break,  // continue, too
    Return, // yield, too
    Throw,
    Try,
    Catch,
    Local,
    Function,
    Class,
    Extends,
    Static,
    Enum,
    Const
};

// Reads one token after the other. Holds nothing that has to be destroyed.
class ScriptTokens
{
public:
    // `text` must stay as it is.
    explicit ScriptTokens(const QByteArray &text);

    // Goes to the next token, and returns it.
    Token next();

    // Of the token that was read last: its bytes are from begin() until before end().
    int begin() const { return m_begin; }
    int end() const { return m_position; }
    int line() const { return m_beginLine; }                 // from 1
    int column() const { return m_begin - m_lineStart + 1; } // from 1
    bool isFirstOfLine() const { return m_isFirstOfLine; }

private:
    char byteAt(int position) const;
    bool skips(const char *operators);
    void passLineEnd();
    bool skipBlanks();
    bool skipComment();
    Token readOperator();
    Token readText(char quote, bool isVerbatim);
    Token readNumber();
    Token readWord();

    const char *m_text;
    int m_size;
    int m_position = 0;
    int m_line = 1;
    int m_lineStart = 0;
    int m_begin = 0;
    int m_beginLine = 1;
    bool m_isFirstOfLine = false;
};
