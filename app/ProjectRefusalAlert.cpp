#include "app/ProjectRefusalAlert.h"

#include "app/Alert.h"
#include "store/Localization.h"
#include "store/StringTable.h"

QString ProjectRefusalAlert::asSentence(QString text)
{
    if (text.isEmpty())
        return text;
    text[0] = text[0].toUpper();
    if (!text.endsWith(QLatin1Char('.')))
        text += QLatin1Char('.');
    return text;
}

void ProjectRefusalAlert::show(const ProjectCatalog::Result& refusal, QWidget* parent)
{
    const StringTable& text = StringTable::forLanguage(StringTable::Language::French);
    Alert alert;
    if (refusal.lockRefusal) {
        alert.setMessageText(refusal.lockRefusal->message(text));
        alert.setInformativeText(refusal.lockRefusal->details(text));
    } else {
        alert.setMessageText(asSentence(refusal.why));
        alert.setInformativeText(QString());
    }
    alert.addButtonWithTitle(Localization::localizedString("MainViewAlertDownloadErrorDefaultButton"));
    alert.runModal(parent);
}
