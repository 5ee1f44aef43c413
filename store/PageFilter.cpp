#include "store/PageFilter.h"

namespace PageFilter {

qint32 normalized(qint32 code)
{
    return (code >= All && code <= Canonical) ? code : All;
}

QList<QuillmerePagePtr> pages(qint32 code, const std::shared_ptr<Project>& project)
{
    switch (normalized(code)) {
    case Error404AllTypes:
        return QuillmerePage::getPages404AllTypesMimeForProject(project);
    case Error404OnlyHTML:
        return QuillmerePage::getPages404OnlyHTMLForProject(project);
    case Error404NotHTML:
        return QuillmerePage::getPages404AllNotHTMLForProject(project);
    case NoIndex:
        return QuillmerePage::getPagesNoIndexForProject(project);
    case Canonical:
        return QuillmerePage::getPagesCanonicalForProject(project);
    default:
        return QuillmerePage::getAllPagesForProject(project);
    }
}

QString title(qint32 code, quint64 count)
{
    static const char* const formats[] = {
        "%1 documents référencés",
        "%1 documents en 404 tous types référencés",
        "%1 documents en 404 de type HTML référencés",
        "%1 documents en 404 pas de type HTML référencés",
        "%1 documents en noindex référencés",
        "%1 documents canonical référencés",
    };
    return QString::fromUtf8(formats[normalized(code)]).arg(count);
}

QString sourcesTitle(quint64 count)
{
    return QStringLiteral("%1 liens vers le document sélectionné").arg(count);
}

} // namespace PageFilter
