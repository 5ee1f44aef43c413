#include "app/StandardTranslations.h"

#include "store/Localization.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

namespace StandardTranslations {

bool install()
{
    static QTranslator* translator = nullptr;
    Localization::install();
    if (translator)
        return true;
    if (!QCoreApplication::instance())
        return false;
    auto* t = new QTranslator(QCoreApplication::instance());
    if (!t->load(QStringLiteral("qtbase_fr"), QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        delete t;
        return false;
    }
    QCoreApplication::installTranslator(t);
    translator = t;
    return true;
}

} // namespace StandardTranslations
