#pragma once

#include "support/CliRunner.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <sys/stat.h>
#include <unistd.h>

// Runs the program as a user who may not write what root made: root writes through any
// permission, so as root it runs under the unprivileged "nobody".
inline CliResult runUnprivileged(const QStringList& arguments, const QString& dataDir)
{
    if (::geteuid() != 0)
        return runCli(arguments, dataDir);
    QProcess process;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QUILLMERE_TRACE"), QStringLiteral("0"));
    env.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    env.remove(QStringLiteral("LC_ALL"));
    env.insert(QStringLiteral("HOME"), dataDir);
    process.setProcessEnvironment(env);
    process.start(QStringLiteral("setpriv"), QStringList{QStringLiteral("--reuid=65534"), QStringLiteral("--regid=65534"),
                                                         QStringLiteral("--clear-groups"), QStringLiteral(QUILLMERE_CLI_PATH),
                                                         QStringLiteral("--data-dir"), dataDir}
                                                 + arguments);
    CliResult result;
    if (!process.waitForStarted(10000) || !process.waitForFinished(60000))
        return result;
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

// Lets the unprivileged user of runUnprivileged reach (and, with `owned`, own) the directory.
inline void openTo(const QString& directory, bool owned)
{
    QDirIterator it(directory, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden,
                    QDirIterator::Subdirectories);
    QStringList paths{directory};
    while (it.hasNext())
        paths << it.next();
    for (const QString& path : paths) {
        const QByteArray name = QFile::encodeName(path);
        ::chmod(name.constData(), QFileInfo(path).isDir() ? 0755 : 0644);
        if (owned && ::geteuid() == 0)
            (void)::chown(name.constData(), 65534, 65534);
    }
}

