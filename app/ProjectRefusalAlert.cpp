#include "app/ProjectRefusalAlert.h"

#include "app/Alert.h"
#include "store/Localization.h"
#include "store/StringTable.h"

namespace {
// The core words its refusals as the command line prints them, after "quillmere: "; an alert
// shows them as a sentence of their own.
QString asSentence(QString text)
{
    if (text.isEmpty())
        return text;
    text[0] = text[0].toUpper();
    if (!text.endsWith(QLatin1Char('.')))
        text += QLatin1Char('.');
    return text;
}
} // namespace

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
