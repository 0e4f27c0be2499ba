// What a script computes. The compiler notes of an operand whether it has read it, and so how many
// places of its count it takes: a variable or slot that an assignment follows has not been read.
// It looks at the first operand alone, so all that stands between that and the assignment makes it
// lose count; it would take one place too many, or leave one, and write to any.
#include "script/trap_finder.h"

namespace
{

constexpr const char *kNoTarget = "an assignment to what is no variable or slot";
constexpr const char *kNoOperand = "no variable or slot that could be changed";
constexpr const char *kBaseStays = "'base' cannot be modified";
constexpr const char *kNamelessAttributes = "attributes need a member that has a name";

} // namespace

void TrapFinder::list()
{
    do
        expression();
    while (takes(Token::Comma));
}

void TrapFinder::expression()
{
    Operand left = operand(false);
    bool isAlone = true;
    for (; isBinary(); isAlone = false) {
        next();
        operand(false);
    }
    if (m_token == Token::Equals || m_token == Token::Assign) {
        if (!isAlone || left == Operand::Counted || left == Operand::Negated)
            return trap(kNoTarget);
        if (left != Operand::Place)
            return stop();
        next();
        expression();
    } else if (takes(Token::Question)) {
        expression();
        expect(Token::Colon);
        expression();
    }
}

// `isNotRead`: what is around it changes the place, and does not want what is in it.
Operand TrapFinder::operand(bool isNotRead)
{
    Operand kind = firstOf(isNotRead);
    for (;;) {
        switch (m_token) {
        case Token::Dot:
            next();
            expectName();
            kind = kind == Operand::Base ? Operand::Value : Operand::Place;
            break;
        case Token::OpenSquare:
            if (m_tokens.isFirstOfLine())
                stop();
            next();
            expression();
            expect(Token::CloseSquare);
            kind = kind == Operand::Base ? Operand::Value : Operand::Place;
            break;
        case Token::OpenRound:
            next();
            arguments();
            kind = Operand::Value;
            break;
        case Token::Increment:
            if (m_tokens.isFirstOfLine())
                return kind;
            if (kind == Operand::Base)
                trap(kBaseStays);
            else if (kind != Operand::Place)
                stop();
            next();
            return Operand::Counted;
        default:
            return kind;
        }
    }
}

// Without what is asked of it: slots, elements and calls.
Operand TrapFinder::firstOf(bool isNotRead)
{
    const Token token = m_token;
    next();
    switch (token) {
    case Token::Name:
    case Token::This:
    case Token::Constructor:
        return Operand::Place;
    case Token::DoubleColon:
        expectName();
        return Operand::Place;
    case Token::Base:
        return Operand::Base;
    case Token::Minus:
        if (takes(Token::Integer) || takes(Token::Float))
            return Operand::Value;
        return unary(isNotRead);
    case Token::Complement:
        return takes(Token::Integer) ? Operand::Value : unary(isNotRead);
    case Token::Not:
    case Token::Unary:
        return unary(isNotRead);
    default:
        constructed(token);
        return Operand::Value;
    }
}

// The rest of what `token` begins.
void TrapFinder::constructed(Token token)
{
    switch (token) {
    case Token::Text:
    case Token::Integer:
    case Token::Float:
    case Token::Value:
        return;
    case Token::OpenRound:
        list();
        return expect(Token::CloseRound);
    case Token::OpenSquare:
        return arrayBody();
    case Token::OpenCurly:
        return members(Token::Comma, Token::CloseCurly);
    case Token::Function:
        return function(false);
    case Token::At:
        return function(true);
    case Token::Class:
        return classBody();
    case Token::Increment:
    case Token::Delete:
        return changedPlace();
    default:
        return stop();
    }
}

Operand TrapFinder::unary(bool isNotRead)
{
    if (isNotRead)
        trap(kNoOperand);
    operand(false);
    return Operand::Negated;
}

// What ++, -- and delete change, and what a class statement defines.
void TrapFinder::changedPlace()
{
    const Operand kind = operand(true);
    if (kind == Operand::Base)
        trap(kBaseStays);
    else if (kind == Operand::Counted)
        trap(kNoOperand);
}

void TrapFinder::arguments()
{
    while (m_token != Token::End && m_token != Token::CloseRound) {
        expression();
        if (takes(Token::Comma) && m_token == Token::CloseRound)
            stop();
    }
    next();
}

void TrapFinder::arrayBody()
{
    while (m_token != Token::End && m_token != Token::CloseSquare) {
        expression();
        takes(Token::Comma);
    }
    next();
}

// Its parameters and its body.
void TrapFinder::function(bool isLambda)
{
    expect(Token::OpenRound);
    while (m_token != Token::End && m_token != Token::CloseRound) {
        if (takes(Token::Ellipsis))
            break;
        expectName();
        if (takes(Token::Equals))
            expression();
        if (!takes(Token::Comma) && m_token != Token::CloseRound)
            stop();
    }
    expect(Token::CloseRound);
    if (isLambda)
        expression();
    else
        statement();
}

void TrapFinder::classBody()
{
    if (takes(Token::Extends))
        expression();
    if (takes(Token::OpenAttributes))
        members(Token::Comma, Token::CloseAttributes);
    expect(Token::OpenCurly);
    members(Token::Semicolon, Token::CloseCurly);
}

// Of a table or a class, which only the separator tells apart.
void TrapFinder::members(Token separator, Token end)
{
    while (m_token != Token::End && m_token != end) {
        bool hasAttributes = false;
        if (separator == Token::Semicolon) {
            hasAttributes = takes(Token::OpenAttributes);
            if (hasAttributes)
                members(Token::Comma, Token::CloseAttributes);
            takes(Token::Static);
        }
        member(separator, hasAttributes);
        takes(separator);
    }
    next();
}

void TrapFinder::member(Token separator, bool hasAttributes)
{
    if (takes(Token::Function)) {
        expectName();
        return function(false);
    }
    if (takes(Token::Constructor))
        return function(false);
    if (separator == Token::Comma && takes(Token::Text)) {
        expect(Token::Colon);
        return expression();
    }
    if (m_token == Token::OpenSquare) {
        // The compiler takes what stands before the name for the attributes.
        if (hasAttributes)
            trap(kNamelessAttributes);
        next();
        list();
        expect(Token::CloseSquare);
    } else {
        expectName();
    }
    expect(Token::Equals);
    expression();
}
