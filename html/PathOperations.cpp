#include "html/PathOperations.h"

namespace PathOperations {

namespace {

const QLatin1Char kSlash('/');

// Collapses runs of "/" and removes a trailing "/" unless the whole string is "/".
QString fixSlashes(const QString& path)
{
    QString result;
    result.reserve(path.length());
    bool previousWasSlash = false;
    for (QChar c : path) {
        const bool isSlash = c == kSlash;
        if (isSlash && previousWasSlash)
            continue;
        result.append(c);
        previousWasSlash = isSlash;
    }
    if (result.length() > 1 && result.endsWith(kSlash))
        result.chop(1);
    return result;
}

} // namespace

QString Standardize(const QString& path)
{
    if (path.isEmpty())
        return path;
    const bool absolute = path.startsWith(kSlash);
    QStringList kept;
    const QStringList parts = path.split(kSlash, Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        if (part == QLatin1String("."))
            continue;
        if (absolute && part == QLatin1String("..")) {
            if (!kept.isEmpty())
                kept.removeLast();
            continue;
        }
        kept.append(part);
    }
    const QString joined = kept.join(kSlash);
    return absolute ? QString(kSlash) + joined : joined;
}

QStringList Components(const QString& path)
{
    QStringList result;
    if (path.startsWith(kSlash))
        result.append(QString(kSlash));
    result.append(path.split(kSlash, Qt::SkipEmptyParts));
    return result;
}

QString Join(const QString& path, const QString& component)
{
    if (component.isEmpty())
        return path.isEmpty() ? path : fixSlashes(path);
    if (path.isEmpty())
        return fixSlashes(component);
    return fixSlashes(path + kSlash + component);
}

QString Parent(const QString& path)
{
    if (path.isEmpty())
        return path;
    const QString fixed = fixSlashes(path);
    if (fixed == QLatin1String("/"))
        return fixed;
    const qsizetype slash = fixed.lastIndexOf(kSlash);
    if (slash < 0)
        return QStringLiteral("");
    if (slash == 0)
        return QString(kSlash);
    return fixed.left(slash);
}

} // namespace PathOperations
