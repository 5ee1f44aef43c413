#pragma once

#include "store/QuillmerePage.h"

#include <QList>
#include <QString>

#include <memory>

class Project;

// The documents list's filters: 0 all pages, 1 404 of all types, 2 404 HTML only,
// 3 404 not HTML, 4 noindex, 5 canonical; any other code reads as 0.
namespace PageFilter {
enum Code : qint32 { All = 0, Error404AllTypes = 1, Error404OnlyHTML = 2, Error404NotHTML = 3, NoIndex = 4, Canonical = 5 };

qint32 normalized(qint32 code);
QList<QuillmerePagePtr> pages(qint32 code, const std::shared_ptr<Project>& project);
// The list's title for that many rows, such as "12 documents référencés" or "1 document
// référencé", and the key of its plural form in the string tables (a text with %1 for the
// count); the singular form's key ends in "One".
QString title(qint32 code, quint64 count);
const char* titleKey(qint32 code);
const char* singularTitleKey(qint32 code);
// The links list's title: how many links reach the selected page (keys "LinksListTitle",
// "LinksListTitleOne").
QString sourcesTitle(quint64 count);
} // namespace PageFilter
