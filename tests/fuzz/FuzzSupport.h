#pragma once

// What every fuzz target shares: a broken invariant aborts with the target's name and a
// short reason (libFuzzer then keeps the input as a reproducer), and the one exception the
// core is allowed to throw at the crawl (RangeException, caught by the page analysis) ends
// only the step that threw it.

#include "html/RangeException.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <exception>

#ifndef QUILLMERE_FUZZ_TARGET
#define QUILLMERE_FUZZ_TARGET "fuzz"
#endif

namespace fuzz {

[[noreturn]] inline void fail(const char* what, const QString& detail = QString())
{
    std::fprintf(stderr, "%s: %s [%s]\n", QUILLMERE_FUZZ_TARGET, what, detail.toUtf8().constData());
    std::abort();
}

inline void check(bool condition, const char* what, const QString& detail = QString())
{
    if (!condition)
        fail(what, detail);
}

// Runs one step; a range fault ends only that step.
template <typename Step>
void guarded(Step step)
{
    try {
        step();
    } catch (const RangeException&) {
    }
}

// Runs one whole input: any exception but a range fault is a finding.
template <typename Body>
void runInput(Body body)
{
    try {
        body();
    } catch (const RangeException&) {
    } catch (const std::exception& e) {
        fail("unexpected exception", QString::fromUtf8(e.what()));
    } catch (...) {
        fail("unexpected exception of unknown type");
    }
}

// Any sequence of UTF-16 code units, lone surrogates included.
inline QString utf16From(const QByteArray& bytes)
{
    QString text;
    for (qsizetype i = 0; i + 1 < bytes.size(); i += 2)
        text.append(QChar(static_cast<char16_t>(static_cast<unsigned char>(bytes[i])
                                                | (static_cast<unsigned char>(bytes[i + 1]) << 8))));
    return text;
}

// The payload as text: UTF-8 (odd mode bytes) or raw UTF-16 code units (even ones), so that
// both well-formed text and strings no decoder would produce are tried.
inline QString textFrom(unsigned char mode, const QByteArray& payload)
{
    return (mode & 1) ? QString::fromUtf8(payload) : utf16From(payload);
}

} // namespace fuzz
