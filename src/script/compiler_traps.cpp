#include "script/compiler_traps.h"

#include "script/script_limits.h"
#include "script/trap_finder.h"

#include <type_traits>

static_assert(std::is_trivially_destructible_v<TrapFinder>);

void TrapFinder::next()
{
    if (m_isOver)
        return;
    checkScriptDepth();
    m_previous = m_token;
    m_token = m_tokens.next();
    m_isOver = m_token == Token::End;
}

bool TrapFinder::takes(Token token)
{
    if (m_token != token)
        return false;
    next();
    return true;
}

void TrapFinder::expect(Token token)
{
    if (!takes(token))
        stop();
}

void TrapFinder::stop()
{
    m_token = Token::End;
    m_isOver = m_isStopped = true;
}

void TrapFinder::expectName()
{
    if (!takes(Token::Name) && !takes(Token::Constructor))
        stop();
}

void TrapFinder::trap(const char *error)
{
    if (!m_isStopped)
        m_trap = {error, m_tokens.line(), m_tokens.column()};
    stop();
}

bool TrapFinder::endsStatement() const
{
    return m_tokens.isFirstOfLine() || m_token == Token::End || m_token == Token::CloseCurly ||
           m_token == Token::Semicolon;
}

void TrapFinder::endStatement()
{
    if (!takes(Token::Semicolon) && !endsStatement())
        stop();
}

bool TrapFinder::isBinary() const
{
    return m_token == Token::Binary || m_token == Token::Minus || m_token == Token::In;
}

void TrapFinder::statements()
{
    while (m_token != Token::End && m_token != Token::CloseCurly && m_token != Token::Case &&
           m_token != Token::Default)
        statementOfMany();
}

void TrapFinder::statementOfMany()
{
    statement();
    if (m_tokens.isFirstOfLine() ||
        (m_previous != Token::CloseCurly && m_previous != Token::Semicolon))
        endStatement();
}

void TrapFinder::statement()
{
    switch (m_token) {
    case Token::If:
        return ifStatement();
    case Token::While:
        next();
        condition();
        return statement();
    case Token::Do:
        next();
        statement();
        expect(Token::While);
        return condition();
    case Token::For:
        return forStatement();
    case Token::Foreach:
        return foreachStatement();
    case Token::Switch:
        return switchStatement();
    case Token::Try:
        return tryStatement();
    case Token::OpenCurly:
        next();
        statements();
        return expect(Token::CloseCurly);
    default:
        return simpleStatement();
    }
}

void TrapFinder::simpleStatement()
{
    switch (m_token) {
    case Token::Semicolon:
    case Token::Break:
        return next();
    case Token::Local:
        return localStatement();
    case Token::Return:
        next();
        return endsStatement() ? void() : list();
    case Token::Throw:
        next();
        return list();
    case Token::Function:
        return functionStatement();
    case Token::Class:
        return classStatement();
    case Token::Enum:
        return enumStatement();
    case Token::Const:
        return constStatement();
    default:
        return list();
    }
}

// In brackets.
void TrapFinder::condition()
{
    expect(Token::OpenRound);
    list();
    expect(Token::CloseRound);
}

// Of an if.
void TrapFinder::branch()
{
    if (m_token == Token::OpenCurly)
        return statement();
    statementOfMany();
}

void TrapFinder::ifStatement()
{
    next();
    condition();
    branch();
    if (takes(Token::Else))
        branch();
}

void TrapFinder::forStatement()
{
    next();
    expect(Token::OpenRound);
    if (m_token == Token::Local)
        localStatement();
    else if (m_token != Token::Semicolon)
        list();
    expect(Token::Semicolon);
    if (m_token != Token::Semicolon)
        list();
    expect(Token::Semicolon);
    if (m_token != Token::CloseRound)
        list();
    expect(Token::CloseRound);
    statement();
}

void TrapFinder::foreachStatement()
{
    next();
    expect(Token::OpenRound);
    expectName();
    if (takes(Token::Comma))
        expectName();
    expect(Token::In);
    expression();
    expect(Token::CloseRound);
    statement();
}

void TrapFinder::switchStatement()
{
    next();
    condition();
    expect(Token::OpenCurly);
    while (takes(Token::Case)) {
        expression();
        expect(Token::Colon);
        statements();
    }
    if (takes(Token::Default)) {
        expect(Token::Colon);
        statements();
    }
    expect(Token::CloseCurly);
}

void TrapFinder::tryStatement()
{
    next();
    statement();
    expect(Token::Catch);
    expect(Token::OpenRound);
    expectName();
    expect(Token::CloseRound);
    statement();
}

void TrapFinder::localStatement()
{
    next();
    if (takes(Token::Function)) {
        expectName();
        return function(false);
    }
    do {
        expectName();
        if (takes(Token::Equals))
            expression();
    } while (takes(Token::Comma));
}

void TrapFinder::functionStatement()
{
    next();
    expectName();
    while (takes(Token::DoubleColon))
        expectName();
    function(false);
}

void TrapFinder::classStatement()
{
    next();
    changedPlace();
    classBody();
}

void TrapFinder::enumStatement()
{
    next();
    expectName();
    expect(Token::OpenCurly);
    while (m_token != Token::End && m_token != Token::CloseCurly) {
        expectName();
        if (takes(Token::Equals))
            scalar();
        takes(Token::Comma);
    }
    next();
}

void TrapFinder::constStatement()
{
    next();
    expectName();
    expect(Token::Equals);
    scalar();
    endStatement();
}

void TrapFinder::scalar()
{
    takes(Token::Minus);
    if (!takes(Token::Integer) && !takes(Token::Float) && !takes(Token::Text))
        expect(Token::Value);
}

CompilerTrap TrapFinder::find()
{
    next();
    while (m_token != Token::End)
        statementOfMany();
    return m_trap;
}

CompilerTrap findCompilerTrap(const QByteArray &text)
{
    return TrapFinder(text).find();
}
