// How findCompilerTrap() reads a text: as the compiler does, token for token, and without what that
// makes of it. Where the compiler reports an error, the text ends for this one. It may take more
// than the compiler does; what it does not take, the compiler must report.
//
// Thread: as the machine.
#pragma once

#include "script/compiler_traps.h"
#include "script/script_tokens.h"

// What the compiler has in mind behind an operand.
enum class Operand {
    Value,
    Place, // a variable or slot, which it has not read if it is assigned to
    Base,
    Counted, // ++ or -- stand behind it; it is taken for a place all the same
    Negated, // or another operator stands before it, which takes a place that it has not read
};

// A function for most of the compiler's. Holds nothing that has to be destroyed: next() may leave
// all of it.
class TrapFinder
{
public:
    explicit TrapFinder(const QByteArray &text) : m_tokens(text) {}

    CompilerTrap find();

private:
    // --- Tokens ---

    void next();
    bool takes(Token token);
    void expect(Token token);
    void expectName();
    void stop();
    void trap(const char *error);
    bool endsStatement() const;
    void endStatement();
    bool isBinary() const;

    // --- Statements ---

    void statements();
    void statementOfMany();
    void statement();
    void simpleStatement();
    void branch();
    void ifStatement();
    void forStatement();
    void foreachStatement();
    void switchStatement();
    void tryStatement();
    void localStatement();
    void functionStatement();
    void classStatement();
    void enumStatement();
    void constStatement();
    void scalar();
    void condition();

    // --- Expressions ---

    void list();
    void expression();
    Operand operand(bool isNotRead);
    Operand firstOf(bool isNotRead);
    Operand unary(bool isNotRead);
    void constructed(Token token);
    void changedPlace();
    void arguments();
    void arrayBody();
    void function(bool isLambda);
    void classBody();
    void members(Token separator, Token end);
    void member(Token separator, bool hasAttributes);

    ScriptTokens m_tokens;
    Token m_token = Token::End;
    Token m_previous = Token::End;
    bool m_isOver = false;    // the text
    bool m_isStopped = false; // by what the compiler reports, or by a trap
    CompilerTrap m_trap = {nullptr, 0, 0};
};
