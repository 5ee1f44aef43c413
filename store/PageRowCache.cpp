#include "store/PageRowCache.h"

#include <QHash>

#include <atomic>
#include <cstdio>
#include <mutex>
#include <unordered_map>

namespace PageRowCache {

namespace {
// Past this many answers the memory is given back and filling starts over: a crawl of
// millions of pages keeps to a bounded size. An answer with its texts takes about 500 bytes,
// so this is some 25 MB, and it covers every page of a site of documentation size.
constexpr qsizetype kMaximumAnswers = 50000;

struct Answers {
    QHash<QString, std::optional<Row>> byURL;  // nullopt: no row
    QHash<qint64, QString> urlOfIdentifier;
    QHash<QString, std::optional<HeadersRow>> headersByURL;
    QHash<QString, bool> queued;
};

bool keyable(const QString& url)
{
    return !url.contains(QChar(0));
}

// A full table starts over, as for the page records.
template <typename Table>
void makeRoom(Table& table)
{
    if (table.size() >= kMaximumAnswers)
        table.clear();
}

struct State {
    std::mutex mutex;
    std::unordered_map<sqlite3*, Answers> connections;
};

State& state()
{
    static State s;
    return s;
}

std::atomic<bool> checking{qEnvironmentVariableIntValue("QUILLMERE_CHECK_PAGE_CACHE") != 0};
std::atomic<qint64> fromMemory{0};
std::atomic<qint64> wrong{0};

Answers* answersOf(State& s, sqlite3* db)
{
    const auto found = s.connections.find(db);
    return found == s.connections.end() ? nullptr : &found->second;
}

Row* rowOf(Answers& answers, qint64 idt)
{
    const auto url = answers.urlOfIdentifier.constFind(idt);
    if (url == answers.urlOfIdentifier.cend())
        return nullptr;
    const auto row = answers.byURL.find(url.value());
    return row != answers.byURL.end() && row.value() && row.value()->idt == idt ? &*row.value() : nullptr;
}

qint64* numberOf(Row& row, Column column)
{
    switch (column) {
    case Column::InLinkCount:
        return &row.inLinkCount;
    case Column::OutLinkCount:
        return &row.outLinkCount;
    case Column::IsNoIndex:
        return &row.isNoIndex;
    case Column::IsNoFollow:
        return &row.isNoFollow;
    case Column::IsCanonical:
        return &row.isCanonical;
    case Column::Title:
        break;
    }
    return nullptr;
}
} // namespace

void enable(sqlite3* db)
{
    if (!db)
        return;
    std::lock_guard lock(state().mutex);
    state().connections.try_emplace(db);
}

void disable(sqlite3* db)
{
    {
        std::lock_guard lock(state().mutex);
        if (state().connections.erase(db) == 0)
            return;
    }
    if (checking.load())
        std::fprintf(stderr, "crawl look-ups checked: %lld answered from memory, %lld different from the database\n",
                     static_cast<long long>(fromMemory.load()), static_cast<long long>(wrong.load()));
}

bool isEnabled(sqlite3* db)
{
    std::lock_guard lock(state().mutex);
    return answersOf(state(), db) != nullptr;
}

namespace {
// The answer kept under key: nullopt when none is, else the row, or a null row (through
// *absent) when the database had none. Called under the state's lock.
template <typename Value>
std::optional<Value> keptAnswer(const QHash<QString, std::optional<Value>>& table, const QString& key, bool* absent)
{
    const auto found = table.constFind(key);
    if (found == table.cend())
        return std::nullopt;
    fromMemory.fetch_add(1, std::memory_order_relaxed);
    if (!found.value())
        *absent = true;
    return found.value();
}
} // namespace

std::optional<Row> find(sqlite3* db, const QString& bareURL, bool* absent)
{
    *absent = false;
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    return answers ? keptAnswer(answers->byURL, bareURL, absent) : std::nullopt;
}

void remember(sqlite3* db, const QString& bareURL, const Row* row)
{
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    if (!answers)
        return;
    if (answers->byURL.size() >= kMaximumAnswers) {
        answers->byURL.clear();
        answers->urlOfIdentifier.clear();
    }
    if (row) {
        answers->byURL.insert(bareURL, *row);
        answers->urlOfIdentifier.insert(row->idt, bareURL);
    } else {
        answers->byURL.insert(bareURL, std::nullopt);
    }
}

void setText(sqlite3* db, qint64 idt, Column column, const QString& storedText)
{
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    if (!answers || column != Column::Title)
        return;
    if (Row* row = rowOf(*answers, idt))
        row->title = storedText;
}

namespace {
// The kept copy of a number of the row with this identifier, changed by `change`.
template <typename Change>
void changeNumber(sqlite3* db, qint64 idt, Column column, Change change)
{
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    if (!answers)
        return;
    if (Row* row = rowOf(*answers, idt))
        if (qint64* number = numberOf(*row, column))
            change(*number);
}
} // namespace

void setNumber(sqlite3* db, qint64 idt, Column column, qint64 storedValue)
{
    changeNumber(db, idt, column, [storedValue](qint64& number) { number = storedValue; });
}

void addToNumber(sqlite3* db, qint64 idt, Column column, qint64 delta)
{
    changeNumber(db, idt, column, [delta](qint64& number) { number += delta; });
}

void forgetURL(sqlite3* db, const QString& bareURL)
{
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    if (!answers)
        return;
    const auto found = answers->byURL.constFind(bareURL);
    if (found == answers->byURL.cend())
        return;
    if (found.value())
        answers->urlOfIdentifier.remove(found.value()->idt);
    answers->byURL.erase(found);
}

void forgetIdentifier(sqlite3* db, qint64 idt)
{
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    if (!answers)
        return;
    const auto url = answers->urlOfIdentifier.constFind(idt);
    if (url == answers->urlOfIdentifier.cend())
        return;
    answers->byURL.remove(url.value());
    answers->urlOfIdentifier.erase(url);
}

std::optional<HeadersRow> findHeaders(sqlite3* db, const QString& url, bool* absent)
{
    *absent = false;
    if (!keyable(url))
        return std::nullopt;
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    return answers ? keptAnswer(answers->headersByURL, url, absent) : std::nullopt;
}

void rememberHeaders(sqlite3* db, const QString& url, const HeadersRow* row)
{
    if (!keyable(url))
        return;
    std::lock_guard lock(state().mutex);
    if (Answers* answers = answersOf(state(), db)) {
        makeRoom(answers->headersByURL);
        answers->headersByURL.insert(url, row ? std::optional<HeadersRow>(*row) : std::nullopt);
    }
}

void forgetHeaders(sqlite3* db, const QString& url)
{
    std::lock_guard lock(state().mutex);
    if (Answers* answers = answersOf(state(), db))
        answers->headersByURL.remove(url);
}

std::optional<bool> findQueued(sqlite3* db, const QString& url)
{
    if (!keyable(url))
        return std::nullopt;
    std::lock_guard lock(state().mutex);
    Answers* answers = answersOf(state(), db);
    if (!answers)
        return std::nullopt;
    const auto found = answers->queued.constFind(url);
    if (found == answers->queued.cend())
        return std::nullopt;
    fromMemory.fetch_add(1, std::memory_order_relaxed);
    return found.value();
}

void rememberQueued(sqlite3* db, const QString& url, bool queued)
{
    if (!keyable(url))
        return;
    std::lock_guard lock(state().mutex);
    if (Answers* answers = answersOf(state(), db)) {
        makeRoom(answers->queued);
        answers->queued.insert(url, queued);
    }
}

void clear(sqlite3* db)
{
    std::lock_guard lock(state().mutex);
    if (Answers* answers = answersOf(state(), db)) {
        answers->byURL.clear();
        answers->urlOfIdentifier.clear();
        answers->headersByURL.clear();
        answers->queued.clear();
    }
}

QString storedForm(const QString& text)
{
    QByteArray utf8 = text.toUtf8();
    const qsizetype zero = utf8.indexOf('\0');
    if (zero >= 0)
        utf8.truncate(zero);
    return utf8.isEmpty() ? QStringLiteral("") : QString::fromUtf8(utf8);
}

void setChecking(bool on)
{
    checking.store(on);
}

bool isChecking()
{
    return checking.load();
}

void noteChecked(bool same, const QString& url, const char* what)
{
    if (same)
        return;
    wrong.fetch_add(1);
    std::fprintf(stderr, "%s of %s: the answer from memory differs from the database's\n", what,
                 url.toUtf8().constData());
}

qint64 answersFromMemory()
{
    return fromMemory.load();
}

qint64 mismatches()
{
    return wrong.load();
}

} // namespace PageRowCache
