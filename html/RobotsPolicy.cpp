#include "html/RobotsPolicy.h"

#include <QByteArrayView>

namespace {

// Larger files are cut here; crawlers need not read more.
constexpr qsizetype kMaxBytes = 512000;

bool isBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}

QByteArrayView trimmed(QByteArrayView text)
{
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text[begin]))
        ++begin;
    while (end > begin && isBlank(text[end - 1]))
        --end;
    return text.sliced(begin, end - begin);
}

bool isTokenChar(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '_';
}

// A user-agent value names a crawler by its leading letters, "-" and "_" ("Quillmere/2.0"
// names "Quillmere"); "" when it starts with anything else.
QByteArrayView productTokenOf(QByteArrayView value)
{
    qsizetype end = 0;
    while (end < value.size() && isTokenChar(value[end]))
        ++end;
    return value.first(end);
}

bool isUnreserved(unsigned char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' || c == '.'
        || c == '_' || c == '~';
}

// Kept as they are on both sides: they mean something in a URL, so their escaped and
// unescaped forms differ. "*" and "$" are not here: in a pattern they are wildcards, and a
// URL's own "*" and "$" are compared in their escaped forms, as a pattern writes them to
// match them literally.
bool isKeptReserved(unsigned char c)
{
    switch (c) {
    case ':': case '/': case '?': case '#': case '[': case ']': case '@':
    case '!': case '&': case '\'': case '(': case ')': case '+': case ',': case ';': case '=':
        return true;
    default:
        return false;
    }
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

void appendEscaped(QString& out, unsigned char c)
{
    static const char kHex[] = "0123456789ABCDEF";
    out.append(QLatin1Char('%'));
    out.append(QLatin1Char(kHex[c >> 4]));
    out.append(QLatin1Char(kHex[c & 15]));
}

// One form for equivalent spellings: escapes of unreserved characters decoded, every other
// escape in upper-case hex, and what a URL may not hold as it is (non-ASCII octets, blanks,
// controls, a "%" that starts no escape) escaped. With `wildcards`, "*" stays as it is.
QString normalised(QByteArrayView raw, bool wildcards)
{
    QString out;
    out.reserve(raw.size() + 8);
    for (qsizetype i = 0; i < raw.size(); ++i) {
        const auto c = static_cast<unsigned char>(raw[i]);
        if (c == '%' && i + 2 < raw.size() && hexValue(raw[i + 1]) >= 0 && hexValue(raw[i + 2]) >= 0) {
            const auto decoded = static_cast<unsigned char>(hexValue(raw[i + 1]) * 16 + hexValue(raw[i + 2]));
            if (isUnreserved(decoded))
                out.append(QLatin1Char(char(decoded)));
            else
                appendEscaped(out, decoded);
            i += 2;
        } else if (isUnreserved(c) || isKeptReserved(c) || (wildcards && c == '*')) {
            out.append(QLatin1Char(char(c)));
        } else {
            appendEscaped(out, c);
        }
    }
    return out;
}

// The path and query that rules are matched against.
QString pathOf(const QUrl& url)
{
    QByteArray raw = url.path(QUrl::FullyEncoded).toUtf8();
    if (raw.isEmpty())
        raw = "/";
    if (url.hasQuery())
        raw += '?' + url.query(QUrl::FullyEncoded).toUtf8();
    return normalised(raw, false);
}

struct Group {
    QList<QByteArrayView> agents;
    QList<std::pair<bool, QByteArrayView>> rules;  // allow, value
};

// The body as read: no byte order mark, and no more than the limit, cut back to the end of
// its last whole line so that a rule cut short does not stand for a broader one.
QByteArrayView readablePart(const QByteArray& body)
{
    QByteArrayView text(body);
    if (text.startsWith("\xEF\xBB\xBF"))
        text = text.sliced(3);
    if (text.size() > kMaxBytes) {
        const bool cutAtLineEnd = text[kMaxBytes] == '\n' || text[kMaxBytes] == '\r';
        text = text.first(kMaxBytes);
        if (!cutAtLineEnd) {
            qsizetype end = text.size();
            while (end > 0 && text[end - 1] != '\n' && text[end - 1] != '\r')
                --end;
            text = text.first(end);
        }
    }
    return text;
}

QList<Group> groupsOf(QByteArrayView text)
{
    QList<Group> groups;
    bool lastWasRule = false;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && text[end] != '\n' && text[end] != '\r')
            ++end;
        QByteArrayView line = text.sliced(start, end - start);
        start = end + 1;
        const qsizetype hash = line.indexOf('#');
        if (hash >= 0)
            line = line.first(hash);
        const qsizetype colon = line.indexOf(':');
        if (colon < 0)
            continue;
        const QByteArrayView key = trimmed(line.first(colon));
        const QByteArrayView value = trimmed(line.sliced(colon + 1));
        const bool allow = key.compare("allow", Qt::CaseInsensitive) == 0;
        if (key.compare("user-agent", Qt::CaseInsensitive) == 0) {
            if (groups.isEmpty() || lastWasRule)
                groups.append(Group());
            groups.last().agents.append(value);
            lastWasRule = false;
        } else if (allow || key.compare("disallow", Qt::CaseInsensitive) == 0) {
            // Rules before the first user-agent line belong to no one.
            if (groups.isEmpty())
                continue;
            groups.last().rules.append({allow, value});
            lastWasRule = true;
        }
        // Other lines (sitemap, crawl-delay, anything unknown) neither end nor start a group.
    }
    return groups;
}

} // namespace

RobotsPolicy RobotsPolicy::allowAll()
{
    return RobotsPolicy();
}

RobotsPolicy RobotsPolicy::disallowAll(const QString& why)
{
    RobotsPolicy policy;
    policy.disallowEverything_ = true;
    policy.disallowReason_ = why;
    return policy;
}

RobotsPolicy RobotsPolicy::parse(const QByteArray& body, const QString& productToken)
{
    const QByteArray wanted = productTokenOf(productToken.toUtf8()).toByteArray();
    const QList<Group> groups = groupsOf(readablePart(body));

    // The groups naming the crawler, even without rules, rule out the "*" groups.
    QList<const Group*> named;
    QList<const Group*> everyone;
    for (const Group& group : groups) {
        bool namesUs = false;
        bool namesEveryone = false;
        for (QByteArrayView agent : group.agents) {
            const QByteArrayView token = productTokenOf(agent);
            namesUs = namesUs || (!token.isEmpty() && token.compare(wanted, Qt::CaseInsensitive) == 0);
            namesEveryone = namesEveryone || agent == "*";
        }
        if (namesUs)
            named.append(&group);
        else if (namesEveryone)
            everyone.append(&group);
    }

    RobotsPolicy policy;
    for (const Group* group : named.isEmpty() ? everyone : named) {
        for (const auto& [allow, value] : group->rules) {
            // An empty value is no rule ("Disallow:" allows everything).
            if (value.isEmpty())
                continue;
            Rule rule;
            rule.allow = allow;
            rule.written = (allow ? QStringLiteral("Allow: ") : QStringLiteral("Disallow: ")) + QString::fromUtf8(value);
            rule.octets = int(value.size());
            QByteArrayView pattern = value;
            if (pattern.endsWith('$')) {
                rule.anchored = true;
                pattern.chop(1);
            }
            rule.pattern = normalised(pattern, true);
            rule.pieces = rule.pattern.split(QLatin1Char('*'));
            policy.rules_.append(rule);
        }
    }
    return policy;
}

RobotsPolicy RobotsPolicy::fromAnswer(int status, const QByteArray& body, const QString& productToken)
{
    if (status >= 200 && status <= 299)
        return parse(body, productToken);
    // Redirects are followed before; one still standing (too many hops, no Location) means,
    // like a 4xx, that there is no file to obey.
    if (status >= 300 && status <= 499)
        return allowAll();
    if (status == 0)
        return disallowAll(QStringLiteral("robots.txt could not be fetched"));
    return disallowAll(QStringLiteral("robots.txt answered %1").arg(status));
}

bool RobotsPolicy::matches(const Rule& rule, const QString& path)
{
    const QList<QString>& pieces = rule.pieces;
    const QString& first = pieces.first();
    if (pieces.size() == 1)
        return rule.anchored ? path == first : path.startsWith(first);
    if (!path.startsWith(first))
        return false;
    // Each piece between two "*"s at its first place after the previous one: the earliest
    // places leave the most room for the rest, so no other choice can succeed where this
    // one fails, and the work stays linear in the path for each piece.
    qsizetype position = first.size();
    const qsizetype last = pieces.size() - 1;
    for (qsizetype i = 1; i < last; ++i) {
        const QString& piece = pieces[i];
        if (piece.isEmpty())
            continue;
        const qsizetype found = path.indexOf(piece, position);
        if (found < 0)
            return false;
        position = found + piece.size();
    }
    const QString& end = pieces[last];
    if (rule.anchored)
        return path.size() - end.size() >= position && path.endsWith(end);
    return end.isEmpty() || path.indexOf(end, position) >= 0;
}

RobotsPolicy::Verdict RobotsPolicy::check(const QUrl& url) const
{
    const QString path = pathOf(url);
    if (path == QLatin1String("/robots.txt"))
        return Verdict();
    if (disallowEverything_)
        return Verdict{false, disallowReason_};
    const Rule* best = nullptr;
    for (const Rule& rule : rules_) {
        if (best && (rule.octets < best->octets || (rule.octets == best->octets && !rule.allow)))
            continue;
        if (matches(rule, path))
            best = &rule;
    }
    if (!best)
        return Verdict();
    return Verdict{best->allow, best->written};
}
