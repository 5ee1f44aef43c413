#include "store/PageFilter.h"

#include "store/Localization.h"
#include "store/PluralText.h"

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

const char* titleKey(qint32 code)
{
    static const char* const keys[] = {"DocumentsListTitleAll",     "DocumentsListTitle404All",
                                       "DocumentsListTitle404Html", "DocumentsListTitle404Other",
                                       "DocumentsListTitleNoIndex", "DocumentsListTitleCanonical"};
    return keys[normalized(code)];
}

const char* singularTitleKey(qint32 code)
{
    static const char* const keys[] = {"DocumentsListTitleAllOne",     "DocumentsListTitle404AllOne",
                                       "DocumentsListTitle404HtmlOne", "DocumentsListTitle404OtherOne",
                                       "DocumentsListTitleNoIndexOne", "DocumentsListTitleCanonicalOne"};
    return keys[normalized(code)];
}

QString title(qint32 code, quint64 count)
{
    return PluralText::count(singularTitleKey(code), titleKey(code), count);
}

QString sourcesTitle(quint64 count)
{
    return PluralText::count("LinksListTitleOne", "LinksListTitle", count);
}

} // namespace PageFilter
