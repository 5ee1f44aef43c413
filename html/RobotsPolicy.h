#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUrl>

// robots.txt read as RFC 9309 says: the groups whose user-agent lines name the crawler's
// product token (case-insensitive, the token's own characters only), else the "*" groups,
// merged when several match; the longest matching rule wins, Allow over Disallow when two
// are as long; "*" matches any run of characters and a final "$" anchors the end; paths are
// compared with percent-escapes normalised. /robots.txt itself is always allowed. Used by
// the web rules only.
class RobotsPolicy {
public:
    struct Verdict {
        bool allowed = true;
        // The rule that decided, as the file wrote it ("Disallow: /private/"); "" when no
        // rule matched; why() when everything is disallowed.
        QString rule;
    };

    // Everything allowed: no file (4xx), or robots.txt ignored.
    static RobotsPolicy allowAll();
    // Everything disallowed: the server failed (5xx) or could not be reached.
    static RobotsPolicy disallowAll(const QString& why);
    // The rules of a file's body (at most the first 500 KiB are read, a line cut by the
    // limit left out), for `productToken` (the crawler's name, "Quillmere"). The body is
    // read as bytes: octets that are not UTF-8 are compared as their percent-escapes.
    static RobotsPolicy parse(const QByteArray& body, const QString& productToken);
    // The policy an answer to GET /robots.txt gives: 2xx parses the body, 4xx allows all,
    // 5xx or no answer (status 0) disallows all. A 3xx still standing (the redirects are
    // followed before) is no file and allows all; a status outside 100-599 or a 1xx as a
    // final answer is a server failing and disallows all.
    static RobotsPolicy fromAnswer(int status, const QByteArray& body, const QString& productToken);

    // The verdict for a URL's path and query ("/" when the path is empty).
    Verdict check(const QUrl& url) const;

    int ruleCount() const { return int(rules_.size()); }
    // True for disallowAll and for the answers that make one; why() says what happened
    // ("robots.txt answered 503"), "" otherwise.
    bool disallowsEverything() const { return disallowEverything_; }
    QString why() const { return disallowReason_; }

private:
    struct Rule {
        bool allow = false;
        QString pattern;  // as normalised for matching
        QString written;  // "Disallow: /x" as in the file
        // The pattern cut at its "*"s (one piece when it has none), and whether a final "$"
        // ties its last piece to the end of the path.
        QList<QString> pieces;
        bool anchored = false;
        // The value's length in octets as the file wrote it: the longest match wins.
        int octets = 0;
    };
    static bool matches(const Rule& rule, const QString& path);
    QList<Rule> rules_;
    bool disallowEverything_ = false;
    QString disallowReason_;
};
