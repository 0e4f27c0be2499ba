// A look at the tags of an XML file before a parser sees them.
//
// Thread: pure function; any thread.
#pragma once

#include <QByteArray>

// Of one element; DAT files have ten at most.
constexpr int kMostAttributes = 64;

enum class TagFault {
    None,
    // More than kMostAttributes: the parser compares each with all others, so that a file of a few
    // megabytes could keep it busy for hours.
    Crowded,
    // A document type with declarations in the file itself: a few lines of entities can stand for
    // gigabytes.
    Declarations
};

// The first fault. `xml`: UTF-8, UTF-16 with its mark, or another encoding that has ASCII in it.
TagFault tagFaultOf(const QByteArray &xml);
