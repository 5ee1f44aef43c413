#pragma once

#include <QString>

#include <memory>

class Project;

// The lists' own connection to the crawl database of the project shown. It only reads, on
// the write-ahead log, so the lists are read on the window's thread while a crawl writes
// through its own connection on the crawler's thread, and they show what the crawl has
// committed, never a row of a transaction still open.
class ListReadConnection {
public:
    ListReadConnection() = default;
    ~ListReadConnection();
    ListReadConnection(const ListReadConnection&) = delete;
    ListReadConnection& operator=(const ListReadConnection&) = delete;

    // The project to read the lists of `project` through: a stand-in with its attributes
    // whose database is this connection, opened on first use and kept while `project` is
    // the one shown. `project` itself when its crawl database cannot be read that way; null
    // for null.
    std::shared_ptr<Project> readerFor(const std::shared_ptr<Project>& project);
    // Lets go of the connection (another project shown, or none).
    void close();

private:
    std::weak_ptr<Project> source_;
    QString path_;
    std::shared_ptr<Project> reader_;
};
