#include "crawler/VacuumCleanerOperation.h"

#include "crawler/CrawlTransaction.h"
#include "crawler/MainThread.h"
#include "crawler/RecordMetaTypes.h"
#include "store/Project.h"
#include "store/QuillmereLink.h"

VacuumCleanerOperation::VacuumCleanerOperation(std::shared_ptr<Project> project,
                                               std::shared_ptr<VacuumCleanerDelegate> delegate)
    : project_(std::move(project)), vacuumDelegate_(std::move(delegate))
{
}

void VacuumCleanerOperation::main()
{
    vacuumCleanerDidStart();
    {
        // All or nothing: a vacuum cut short (killed, disk full) must not leave some counts
        // decremented, since running it again decrements them all again.
        CrawlTransaction transaction(project_->sqlite3Database());
        const QList<QuillmerePagePtr> pages = QuillmerePage::getAllVacuumPagesForProject(project_);
        const qint32 count = qint32(pages.size());
        for (qint32 i = 0; i < count; ++i) {
            const QuillmerePagePtr& page = pages[i];
            vacuumProgressIndex(i, count);
            vacuumingPage(page);
            for (const auto& link : QuillmereLink::getSourcesLinksFromPage(page, project_))
                QuillmerePage::decOutLinkCountWithPageIdentifier(qint32(link->idt_source()), project_);
        }
        transaction.commit();
    }
    vacuumCleanerDidEnd();
}

void VacuumCleanerOperation::vacuumCleanerDidStart()
{
    MainThread::performAndWait([this] { mainThreadVacuumCleanerDidStart(); });
}

void VacuumCleanerOperation::vacuumProgressIndex(qint32 currentIndex, qint32 maxIndex)
{
    QVariantMap dictionary;
    dictionary.insert(QStringLiteral("currentIndex"), currentIndex);
    dictionary.insert(QStringLiteral("maxIndex"), maxIndex);
    MainThread::performAndWait([&] { mainThreadVacuumProgressIndexWithMutableDictionnary(dictionary); });
}

void VacuumCleanerOperation::vacuumingPage(const QuillmerePagePtr& page)
{
    QVariantMap dictionary;
    dictionary.insert(QStringLiteral("page"), pageVariant(page));
    MainThread::performAndWait([&] { mainThreadVacuumingWithMutableDictionnary(dictionary); });
}

void VacuumCleanerOperation::vacuumCleanerDidEnd()
{
    MainThread::performAndWait([this] { mainThreadVacuumCleanerDidEnd(); });
}

void VacuumCleanerOperation::mainThreadVacuumCleanerDidStart()
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumCleanerDidStart();
}

void VacuumCleanerOperation::mainThreadVacuumProgressIndexWithMutableDictionnary(QVariantMap& dictionary)
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumProgressIndex(dictionary.value(QStringLiteral("currentIndex")).toInt(),
                                             dictionary.value(QStringLiteral("maxIndex")).toInt());
}

void VacuumCleanerOperation::mainThreadVacuumingWithMutableDictionnary(QVariantMap& dictionary)
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumingPage(pageFromVariant(dictionary.value(QStringLiteral("page"))));
}

void VacuumCleanerOperation::mainThreadVacuumCleanerDidEnd()
{
    if (vacuumDelegate_)
        vacuumDelegate_->vacuumCleanerDidEnd();
}
