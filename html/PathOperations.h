#pragma once

#include <QString>
#include <QStringList>

// Path-string operations used on URL paths and on whole URLs. They are plain string
// operations (no file system, no URL parsing); their quirks are relied upon by the link
// resolution, so they are deliberately not QDir::cleanPath.
namespace PathOperations {

// Collapses runs of "/", drops "." components and a trailing "/" (the root "/" stays).
// In an absolute path each ".." removes itself and the component before it (at the root it
// is simply dropped); in a relative path ".." components are kept.
QString Standardize(const QString& path);

// The components of a path; the leading "/" of an absolute path is a component of its own:
// "/a/b" -> "/", "a", "b"; "a/b" -> "a", "b"; "" -> none. Empty components are skipped.
QStringList Components(const QString& path);

// Appends a component with one "/", then collapses every run of "/" in the whole result and
// drops a trailing "/" (not the root). Joining onto "http://host" therefore gives "http:/host/x".
// An empty side leaves the other one alone.
QString Join(const QString& path, const QString& component);

// Deletes the last component: "/a/b.html" -> "/a", "/b.html" -> "/", "b.html" -> "", "/" -> "/".
QString Parent(const QString& path);

} // namespace PathOperations
