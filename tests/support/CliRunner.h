#pragma once

#include <QMap>
#include <QProcess>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

// Runs the quillmere program as a process and keeps what it said.
struct CliResult {
    int exitCode = -1;
    QString out;
    QString err;
};

// The program speaks the language of its locale: English unless `environment` names another
// (LANG, LC_ALL...), whatever the machine's own locale.
inline CliResult runCli(const QStringList& arguments, const QString& dataDir = QString(), int timeoutMs = 60000,
                        const QByteArray& input = QByteArray(), const QMap<QString, QString>& environment = {})
{
    QProcess process;
    QStringList args;
    if (!dataDir.isEmpty())
        args << QStringLiteral("--data-dir") << dataDir;
    args << arguments;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("QUILLMERE_TRACE"), QStringLiteral("0"));
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANGUAGE"})
        env.remove(QString::fromLatin1(name));
    env.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
    for (auto it = environment.begin(); it != environment.end(); ++it)
        env.insert(it.key(), it.value());
    process.setProcessEnvironment(env);
    process.start(QStringLiteral(QUILLMERE_CLI_PATH), args);
    CliResult result;
    if (!process.waitForStarted(10000))
        return result;
    if (!input.isEmpty())
        process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(timeoutMs)) {
        process.kill();
        process.waitForFinished();
        return result;
    }
    result.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}
