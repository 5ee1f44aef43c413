#pragma once

#include <QString>

// String helpers shared by the link builder, the robots rules and the crawler.

// The string without white space and line ends at either end.
QString stringByTrim(const QString& s);

// The string without one trailing "/", or the string itself. Throws RangeException on an
// empty string: callers rely on that to stop on degenerate URLs.
QString stringWithoutLastSlash(const QString& s);

// Case-insensitive equality in which canonically equivalent Unicode forms are equal.
bool isEqualCaseInsensitive(const QString& a, const QString& b);

// Starts-with test over the first prefix.length() characters, compared as
// isEqualCaseInsensitive does; a string shorter than the prefix never starts with it.
bool hasPrefixCaseInsensitive(const QString& s, const QString& prefix);

// Literal, case-sensitive removal of every occurrence of what (nothing for an empty what).
QString stringByRemovingOccurrences(const QString& s, const QString& what);

// Literal, case-sensitive replacement of every occurrence; an empty target is never found.
QString stringByReplacingOccurrences(const QString& s, const QString& target, const QString& replacement);

// The form in which a page's URL and its canonical href are compared: no "www.", http for
// https, and one trailing "/" less.
QString canonicalComparisonForm(const QString& url);
