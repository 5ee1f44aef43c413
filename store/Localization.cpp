#include "store/Localization.h"

#include <QCoreApplication>
#include <QTranslator>

namespace Localization {

bool install()
{
    static QTranslator* translator = nullptr;
    if (translator)
        return true;
    if (!QCoreApplication::instance())
        return false;
    auto* t = new QTranslator(QCoreApplication::instance());
    if (!t->load(QStringLiteral(":/i18n/quillmere_fr.qm"))) {
        delete t;
        return false;
    }
    QCoreApplication::installTranslator(t);
    translator = t;
    return true;
}

QString localizedString(const char* key)
{
    install();
    return qtTrId(key);
}

} // namespace Localization
